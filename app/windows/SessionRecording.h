#pragma once

namespace velto {

/// Told whenever the arrangement of windows has changed, so that it can be recorded a little later.
class SessionRecording {
 public:
  virtual ~SessionRecording() = default;
  virtual void scheduleSessionRecording() = 0;
};

}  // namespace velto
