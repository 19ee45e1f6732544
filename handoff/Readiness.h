#pragma once

#include <string_view>

#include "handoff/OwnedDescriptor.h"

namespace velto {

/// The environment variable with the number of the pipe on which a starter waits for one line.
inline constexpr char kReadyVariable[] = "VELTO_READY_FD";
/// That line when all is well; any other line is the reason why the application cannot run.
inline constexpr std::string_view kReadyLine = "ready";

/// The application's word to whoever started it and waits. Silent when nobody waits. Only the first word
/// counts; ending without one tells the starter that the application died.
class Readiness {
 public:
  /// Takes the pipe out of the environment, so that no child of this process inherits either. Call it first
  /// in main(), before there are other threads. A value that names no pipe to write to is ignored.
  static Readiness takeFromEnvironment();

  explicit Readiness(OwnedDescriptor pipe) : pipe_(std::move(pipe)) {}

  /// The display is there and the arguments are taken, or handed over.
  void ready() { tell(kReadyLine); }
  /// `reason`: one line for the person.
  void failed(std::string_view reason);

 private:
  void tell(std::string_view line);

  OwnedDescriptor pipe_;
};

}  // namespace velto
