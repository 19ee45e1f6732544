#pragma once

#include "platform/foundation/HttpCookie.h"

namespace velto {

/// Whether a jar takes the cookie at all: it has a name and a domain, and nothing in it would break the
/// header that carries it (control characters, a semicolon, "=" in the name, bytes that are not UTF-8).
bool mayBeStored(const HttpCookie& cookie);

}  // namespace velto
