#pragma once

#include <gdk/gdk.h>

#include "platform/ui/Event.h"

namespace velto {

Modifiers modifiersOf(guint state);

/// The key press in the application's terms; the time is left for the caller. On a keyboard that types no
/// Latin letters a key with modifiers counts as the Latin letter it has besides, so that shortcuts work
/// there.
KeyEvent keyEventOf(const GdkEventKey& event);

}  // namespace velto
