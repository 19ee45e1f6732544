#pragma once

#include "platform/foundation/Url.h"

namespace velto {

/// The URL as web engines write it once they have read it: scheme and host of a web address in lower case, no
/// port that is the scheme's own, and at least "/" for a path. Other URLs stay as they are.
Url engineUrl(const Url& url);

}  // namespace velto
