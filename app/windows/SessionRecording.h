#pragma once

namespace velto {

/// Told whenever the arrangement of windows has changed, so that it can be recorded a little later.
class SessionRecording {
 public:
  virtual ~SessionRecording() = default;
  virtual void scheduleSessionRecording() = 0;
  /// A window shows another page, which does not put off what is about to be recorded.
  virtual void pageChanged() = 0;
};

}  // namespace velto
