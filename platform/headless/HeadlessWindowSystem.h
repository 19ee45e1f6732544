#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/headless/HeadlessSheets.h"
#include "platform/headless/VirtualLoop.h"
#include "platform/ui/Application.h"

namespace velto {

/// A desktop without a display: any set of screens, a window manager that does as it is told, and a person
/// whose hands are the test's.
///
/// A window that asks for the keyboard has it at once. When the key window goes out, is put away or is
/// closed, nobody has the keyboard until the loop runs next; then it goes to the window of the application
/// that had it last.
class HeadlessWindowSystem final : public WindowSystem {
 public:
  /// Absent for a cancelled question.
  using ChosenFiles = std::optional<std::vector<std::filesystem::path>>;

  explicit HeadlessWindowSystem(VirtualLoop& loop);
  /// Before anything else is called.
  void setApplication(Application& application) { application_ = &application; }

  /// Told of each window that goes out, is put away or is closed, once it has.
  void setWindowLeftScreen(std::function<void(const Window&)> left) { windowLeftScreen_ = std::move(left); }

  /// The display that is there at first: 1920x1080 with a panel of 27 at the top.
  static Screen defaultScreen();
  void setScreens(std::vector<Screen> screens) { screens_ = std::move(screens); }
  void setPrefersReducedMotion(bool prefers) { reducedMotion_ = prefers; }

  /// @name The person's hands
  /// @{
  /// The window manager's close button.
  void clickDelete(Window& window);
  /// Null gives the keyboard to another program. Throws when the window is not on the screen.
  void focus(Window* window);
  /// The window manager moved or sized the window.
  void moveByHand(Window& window, const Rect& frame) { window.backendMovedTo(frame); }
  void miniaturizeByHand(Window& window, bool miniaturized);
  /// @}

  /// @name Alerts and questions for files
  /// @{
  /// Those that wait for an answer, oldest first.
  [[nodiscard]] std::vector<Alert> alerts() const { return alerts_.waiting(); }
  /// Answers the oldest alert; its completion is queued on the loop. Without a text the alert's field keeps
  /// what stood in it. Throws `std::logic_error` when no alert waits or it has no such button.
  void answerAlert(std::size_t button, std::optional<std::string> text = std::nullopt);
  void answerAlert(std::string_view buttonTitle, std::optional<std::string> text = std::nullopt);
  /// Those that wait for an answer, oldest first.
  [[nodiscard]] std::vector<OpenPanel> openPanels() const { return openPanels_.waiting(); }
  /// Answers the oldest question for files as `answerAlert` does; without files it is cancelled.
  void answerOpenPanel(const ChosenFiles& files);
  /// One line for each alert or question for files that the person was never seen to answer.
  [[nodiscard]] std::vector<std::string> unansweredSheets() const;
  /// @}

  /// @name What happened
  /// @{
  /// The windows on the screen, the frontmost first.
  [[nodiscard]] std::vector<Window*> frontToBack() const;
  [[nodiscard]] int activations() const { return activations_; }
  [[nodiscard]] bool isStopped() const { return stopped_; }
  /// @}

  [[nodiscard]] std::unique_ptr<WindowPeer> makePeer(Window& window) override;
  [[nodiscard]] std::vector<Screen> screens() const override { return screens_; }
  void activate() override;
  SheetId showAlert(const Alert& alert, WeakPtr<Window> sheetOn, AlertCompletion completion) override;
  SheetId showOpenPanel(const OpenPanel& panel, WeakPtr<Window> sheetOn,
                        OpenPanelCompletion completion) override;
  void dismissSheet(SheetId sheet) override;
  [[nodiscard]] bool prefersReducedMotion() const override { return reducedMotion_; }
  void beep() override {}
  void stop() override { stopped_ = true; }

 private:
  class Peer;
  void ordered(Window& window, WindowPeer::Order order);
  void setMiniaturized(Window& window, bool miniaturized);
  void raise(Window& window);
  void makeKey(Window& window);
  void giveUpKey(const Window& window);
  /// The window that is to have the keyboard when the application gets it back, or null.
  [[nodiscard]] Window* nextKeyWindow() const;
  [[nodiscard]] bool isOnScreen(const Window& window) const;
  void windowGone(Window& window);
  void dismissSheetsOfClosedWindows();
  void answerAlert(const std::function<std::size_t(const Alert&)>& button, std::optional<std::string> text);

  VirtualLoop& loop_;
  Application* application_ = nullptr;
  std::function<void(const Window&)> windowLeftScreen_;
  std::vector<Screen> screens_;
  bool reducedMotion_ = false;
  /// Back to front, without regard to levels.
  std::vector<Window*> stack_;
  /// The one that had the keyboard last is the last.
  std::vector<Window*> keyHistory_;
  /// Ahead of what the application knows while a window is being destroyed.
  const Window* keyHolder_ = nullptr;
  bool keyboardIsElsewhere_ = true;
  HeadlessSheets<Alert, AlertAnswer> alerts_;
  HeadlessSheets<OpenPanel, ChosenFiles> openPanels_;
  SheetId lastSheet_ = 0;
  int activations_ = 0;
  bool stopped_ = false;
  /// Tells queued steps that the window system is still there.
  std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace velto
