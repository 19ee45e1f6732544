#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "handoff/Deadline.h"
#include "handoff/Frame.h"
#include "handoff/OwnedDescriptor.h"

namespace velto {

/// One connected start, as the running application sees it. `socket` does not block.
class HandoffPeer {
 public:
  HandoffPeer(OwnedDescriptor socket, Deadline deadline) : socket_(std::move(socket)), deadline_(deadline) {}

  /// Takes what has come. A peer that ended or failed before its message was complete is dropped.
  FrameDecoder::State receive();
  [[nodiscard]] std::vector<std::string> takeArguments() { return decoder_.takeArguments(); }

  /// Answers, and ends the connection.
  void answer(bool accepted);
  void drop() { socket_.close(); }

  [[nodiscard]] bool connected() const { return socket_.valid(); }
  [[nodiscard]] int descriptor() const { return socket_.get(); }
  /// When the message must be complete.
  [[nodiscard]] Deadline::Clock::time_point deadline() const { return deadline_.moment(); }

 private:
  OwnedDescriptor socket_;
  Deadline deadline_;
  FrameDecoder decoder_;
};

}  // namespace velto
