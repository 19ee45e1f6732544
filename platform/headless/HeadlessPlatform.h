#pragma once

#include <functional>
#include <string>

#include "platform/Platform.h"
#include "platform/headless/HeadlessBackgroundQueue.h"
#include "platform/headless/HeadlessInput.h"
#include "platform/headless/HeadlessWebEngine.h"
#include "platform/headless/HeadlessWebView.h"
#include "platform/headless/HeadlessWindowSystem.h"
#include "platform/headless/MemoryFileManager.h"
#include "platform/headless/VirtualLoop.h"

namespace velto {

/// Everything that the application stands on, without a display, a disk, a network or real time.
///
/// The application's files are below /data/Velto, /config/Velto and /cache/Velto in memory, the person's
/// documents in /home/p/Documents, which is there; the program's resources are those of the source tree,
/// copied into memory. Windows and web views must be gone before it, or be held by nothing but its queue.
class HeadlessPlatform {
 public:
  HeadlessPlatform();
  /// Work that is still queued is dropped. An alert that nobody answered is reported to `onFailure`.
  ~HeadlessPlatform();
  HeadlessPlatform(const HeadlessPlatform&) = delete;
  HeadlessPlatform& operator=(const HeadlessPlatform&) = delete;

  /// A test adds its failure here; without that the process ends.
  std::function<void(std::string)> onFailure;

  [[nodiscard]] Platform& platform() { return platform_; }
  /// To be changed before the application reads it.
  [[nodiscard]] Environment& environment() { return environment_; }
  [[nodiscard]] VirtualLoop& loop() { return loop_; }
  [[nodiscard]] HeadlessBackgroundQueue& backgroundQueue() { return backgroundQueue_; }
  [[nodiscard]] MemoryFileManager& files() { return files_; }
  [[nodiscard]] UserDefaults& defaults() { return defaults_; }
  [[nodiscard]] NotificationCenter& notifications() { return notifications_; }
  [[nodiscard]] HeadlessWindowSystem& windowSystem() { return windowSystem_; }
  [[nodiscard]] HeadlessInput& input() { return input_; }
  [[nodiscard]] Application& application() { return application_; }
  [[nodiscard]] HeadlessWebEngine& webEngine() { return webEngine_; }

  /// See `VirtualLoop::advance`.
  void advance(double seconds = 0) { loop_.advance(seconds); }

 private:
  Environment environment_;
  VirtualLoop loop_;
  HeadlessBackgroundQueue backgroundQueue_;
  MemoryFileManager files_;
  UserDefaults defaults_;
  NotificationCenter notifications_;
  HeadlessWindowSystem windowSystem_;
  HeadlessInput input_;
  Application application_;
  HeadlessWebEngine webEngine_;
  Platform platform_;
};

}  // namespace velto
