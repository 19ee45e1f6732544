#pragma once

#include <thread>

#include <sys/types.h>

#include "handoff/ElectionLock.h"
#include "handoff/HandoffLoop.h"
#include "handoff/OwnedDescriptor.h"
#include "handoff/RuntimeDirectory.h"

namespace velto {

/// The running application's end of the hand-off: its listening socket, which also says that it is the one
/// that runs, and the thread that serves it. Starts can connect as soon as it exists; they wait for their
/// answer until `serve`.
class HandoffServer {
 public:
  /// Listens in `directory`, in the place of a socket that nobody listens on any more; `lock` is the proof
  /// that nobody else is doing so. Throws HandoffError.
  HandoffServer(RuntimeDirectory directory, const ElectionLock& lock, const HandoffLimits& limits = {});

  HandoffServer(const HandoffServer&) = delete;
  HandoffServer& operator=(const HandoffServer&) = delete;

  /// Stops, waits for a callback under way, and removes the socket if it is still this one's. A start that
  /// has no answer yet notices and looks again for who is running. Not to be called from the callback.
  ~HandoffServer();

  /// Starts the thread, once. `callback` runs on it, for one message after the other, and a message is
  /// answered when it returns: let it post to the main queue and come back. Starts wait a few seconds for
  /// their answer, so serve early; the queue keeps what arrives before the application can use it.
  void serve(HandoffCallback callback);

 private:
  void bindListener();
  void removeSocket() const;

  RuntimeDirectory directory_;
  HandoffLimits limits_;
  OwnedDescriptor listener_;
  OwnedDescriptor stop_;
  dev_t device_ = 0;
  ino_t inode_ = 0;
  std::thread thread_;
};

}  // namespace velto
