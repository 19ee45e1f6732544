#pragma once

#include <optional>
#include <string>

#include "platform/foundation/Url.h"

namespace velto {

/// What two URLs have in common when they show the same page: everything but the fragment and the user, with
/// scheme and host in lower case. A default port that is written out makes another page. Absent without a
/// host.
std::optional<std::string> canonicalPageKey(const Url& url);

}  // namespace velto
