#pragma once

#include <chrono>
#include <optional>
#include <string_view>

#include "handoff/Deadline.h"
#include "handoff/OwnedDescriptor.h"
#include "handoff/RuntimeDirectory.h"

namespace velto {

/// A start's connection to the running application.
class HandoffClient {
 public:
  /// Nothing when nobody listens in `directory`. `patience` counts from here until the answer of `deliver`.
  /// Throws HandoffError when somebody listens but cannot be reached.
  static std::optional<HandoffClient> connect(const RuntimeDirectory& directory,
                                              std::chrono::milliseconds patience = std::chrono::seconds(5));

  /// Sends the encoded message and waits for its answer. False when the other side ended before it answered:
  /// it was quitting, so that the message is still to be delivered. Throws HandoffError when it was refused
  /// or not answered in time.
  [[nodiscard]] bool deliver(std::string_view frame) const;

 private:
  HandoffClient(OwnedDescriptor socket, Deadline deadline)
      : socket_(std::move(socket)), deadline_(deadline) {}

  void send(std::string_view frame) const;
  [[nodiscard]] std::optional<char> answer() const;
  void await(short events) const;

  OwnedDescriptor socket_;
  Deadline deadline_;
};

}  // namespace velto
