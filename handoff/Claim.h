#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "handoff/HandoffServer.h"
#include "handoff/RuntimeDirectory.h"

namespace velto {

/// The running application has taken the arguments.
struct HandedOver {};

/// What a start of the application is: the one that runs, listening from now on and with its arguments still
/// its own to handle, or one that handed them over and is done.
using Claim = std::variant<std::unique_ptr<HandoffServer>, HandedOver>;

/// Of any number of starts at the same moment exactly one listens, and the others' arguments reach it. Call
/// it before any slow start-up work. Throws HandoffError.
Claim claimOrHandOver(RuntimeDirectory directory, const std::vector<std::string>& arguments);

}  // namespace velto
