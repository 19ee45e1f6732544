#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace velto {

/// Starts `program` with `arguments` as a process of its own that outlives this one: in a session of its own,
/// in the folder `/`, with nothing of this process but the environment, standard streams on `/dev/null`, and
/// a pipe to say that it is ready (see Readiness). Waits for that word. Throws HandoffError with the
/// application's own reason, or when it is missing, died, or said nothing for `patience` (it is left running
/// then).
void startApplication(const std::string& program, const std::vector<std::string>& arguments,
                      std::chrono::milliseconds patience = std::chrono::seconds(30));

}  // namespace velto
