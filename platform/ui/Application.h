#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Url.h"
#include "platform/foundation/WeakPtr.h"
#include "platform/ui/Alert.h"
#include "platform/ui/OpenPanel.h"
#include "platform/ui/Screen.h"
#include "platform/ui/Window.h"

namespace velto {

/// Told of the application's life. At the start: will finish launching, the request for an untitled file (the
/// application was started; the delegate knows whether something explicit was asked for), did finish
/// launching.
class ApplicationDelegate : public Weakable {
 public:
  virtual ~ApplicationDelegate() = default;
  virtual void applicationWillFinishLaunching() = 0;
  virtual void applicationDidFinishLaunching() = 0;
  virtual void applicationOpenURLs(const std::vector<Url>& urls) = 0;
  /// Arguments of a later start of the program, which hands them over and ends.
  virtual void applicationOpenArguments(const std::vector<std::string>& arguments) = 0;
  virtual bool applicationOpenUntitledFile() = 0;
  virtual bool applicationShouldHandleReopen(bool hasVisibleWindows) = 0;
  virtual void applicationDidBecomeActive() = 0;
  virtual bool applicationShouldTerminateAfterLastWindowClosed() = 0;
  virtual void applicationWillTerminate() = 0;
};

/// What the backend does for all windows together.
class WindowSystem {
 public:
  virtual ~WindowSystem() = default;
  [[nodiscard]] virtual std::unique_ptr<WindowPeer> makePeer(Window& window) = 0;
  /// The connected displays, the main one first. Empty while none is there, which can last a moment when
  /// displays change.
  [[nodiscard]] virtual std::vector<Screen> screens() const = 0;
  /// Brings the application's key window before the windows of other programs.
  virtual void activate() = 0;
  /// Shows the alert on its window, or on its own without one, and answers once, asynchronously. When the
  /// window closes first the answer is the last button.
  virtual SheetId showAlert(const Alert& alert, WeakPtr<Window> sheetOn, AlertCompletion completion) = 0;
  /// The same for a question for files; a window that closes first counts as cancelled.
  virtual SheetId showOpenPanel(const OpenPanel& panel, WeakPtr<Window> sheetOn,
                                OpenPanelCompletion completion) = 0;
  /// Takes the question from the screen; its answer is that of a window that closed. Nothing happens when it
  /// was answered already.
  virtual void dismissSheet(SheetId sheet) = 0;
  /// The person asked the desktop for less motion.
  [[nodiscard]] virtual bool prefersReducedMotion() const = 0;
  virtual void beep() = 0;
  /// Ends the run of the loop.
  virtual void stop() = 0;
};

/// The application as its windows and its delegate see it: which windows there are, which has the keyboard,
/// and whether the application is the active one. Main thread only.
class Application {
 public:
  explicit Application(WindowSystem& windowSystem) : windowSystem_(windowSystem) {}

  void setDelegate(WeakPtr<ApplicationDelegate> delegate) { delegate_ = delegate; }
  [[nodiscard]] ApplicationDelegate* delegate() const { return delegate_.get(); }

  /// Every window that has not been closed, in the order in which they were made.
  [[nodiscard]] const std::vector<Window*>& windows() const { return windows_; }
  [[nodiscard]] Window* keyWindow() const { return keyWindow_; }
  [[nodiscard]] bool isActive() const { return keyWindow_ != nullptr; }
  [[nodiscard]] std::vector<Screen> screens() const { return windowSystem_.screens(); }
  [[nodiscard]] std::optional<Screen> mainScreen() const;

  /// Before the windows of other programs, whatever they are doing.
  void activate() { windowSystem_.activate(); }
  SheetId showAlert(const Alert& alert, WeakPtr<Window> sheetOn, AlertCompletion completion) {
    return windowSystem_.showAlert(alert, sheetOn, std::move(completion));
  }
  SheetId showOpenPanel(const OpenPanel& panel, WeakPtr<Window> sheetOn, OpenPanelCompletion completion) {
    return windowSystem_.showOpenPanel(panel, sheetOn, std::move(completion));
  }
  void dismissSheet(SheetId sheet) { windowSystem_.dismissSheet(sheet); }
  /// Tells the delegate that the application has started.
  void launch();
  /// Tells the delegate and ends the loop.
  void terminate();

  /// @name What windows and the backend report
  /// @{
  [[nodiscard]] WindowSystem& windowSystem() const { return windowSystem_; }
  void windowAdded(Window& window) { windows_.push_back(&window); }
  void windowRemoved(Window& window);
  /// Null when the keyboard went to another program.
  void keyWindowChanged(Window* window);
  /// @}

 private:
  WindowSystem& windowSystem_;
  WeakPtr<ApplicationDelegate> delegate_;
  std::vector<Window*> windows_;
  Window* keyWindow_ = nullptr;
  bool terminating_ = false;
};

}  // namespace velto
