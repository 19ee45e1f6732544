#include "platform/headless/HeadlessWindowSystem.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace velto {

class HeadlessWindowSystem::Peer final : public WindowPeer {
 public:
  Peer(HeadlessWindowSystem& system, Window& window) : system_(system), window_(window) {}
  ~Peer() override { system_.windowGone(window_); }
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  void contentViewChanged() override {}
  void frameChanged() override {}
  void attributesChanged() override {}
  void order(Order order) override { system_.ordered(window_, order); }
  void setMiniaturized(bool miniaturized) override { system_.setMiniaturized(window_, miniaturized); }
  [[nodiscard]] int grantedLevel() const override { return window_.level(); }

 private:
  HeadlessWindowSystem& system_;
  Window& window_;
};

HeadlessWindowSystem::HeadlessWindowSystem(VirtualLoop& loop)
    : loop_(loop),
      screens_{defaultScreen()},
      alerts_(loop,
              [](const Alert& alert) {
                return AlertAnswer{alert.dismissAnswer(), alert.textField.value_or("")};
              }),
      openPanels_(loop, [](const OpenPanel&) { return ChosenFiles(); }) {}

Screen HeadlessWindowSystem::defaultScreen() {
  Screen screen;
  screen.number = 1;
  screen.name = "Headless-1";
  screen.frame = {{0, 0}, {1920, 1080}};
  screen.visibleFrame = {{0, 0}, {1920, 1053}};
  return screen;
}

std::unique_ptr<WindowPeer> HeadlessWindowSystem::makePeer(Window& window) {
  return std::make_unique<Peer>(*this, window);
}

void HeadlessWindowSystem::ordered(Window& window, WindowPeer::Order order) {
  if (order != WindowPeer::Order::out) {
    raise(window);
    if (order == WindowPeer::Order::front) return;
    window.backendSetMiniaturized(false);
    makeKey(window);
    return;
  }
  std::erase(stack_, &window);
  if (window.isClosed()) {
    std::erase(keyHistory_, &window);
    dismissSheetsOfClosedWindows();
  }
  giveUpKey(window);
  if (windowLeftScreen_) windowLeftScreen_(window);
}

void HeadlessWindowSystem::raise(Window& window) {
  std::erase(stack_, &window);
  stack_.push_back(&window);
}

void HeadlessWindowSystem::makeKey(Window& window) {
  std::erase(keyHistory_, &window);
  keyHistory_.push_back(&window);
  keyHolder_ = &window;
  keyboardIsElsewhere_ = false;
  application_->keyWindowChanged(&window);
}

void HeadlessWindowSystem::giveUpKey(const Window& window) {
  if (keyHolder_ != &window) return;
  keyHolder_ = nullptr;
  application_->keyWindowChanged(nullptr);
  loop_.async([this, alive = std::weak_ptr(alive_)] {
    if (alive.expired() || keyHolder_ != nullptr || keyboardIsElsewhere_) return;
    if (Window* next = nextKeyWindow()) makeKey(*next);
  });
}

bool HeadlessWindowSystem::isOnScreen(const Window& window) const {
  return !window.isMiniaturized() && std::find(stack_.begin(), stack_.end(), &window) != stack_.end();
}

Window* HeadlessWindowSystem::nextKeyWindow() const {
  const auto last =
      std::find_if(keyHistory_.rbegin(), keyHistory_.rend(), [this](Window* w) { return isOnScreen(*w); });
  return last == keyHistory_.rend() ? nullptr : *last;
}

void HeadlessWindowSystem::activate() {
  ++activations_;
  if (keyHolder_ != nullptr) return;
  if (Window* last = nextKeyWindow()) return makeKey(*last);
  for (Window* window : frontToBack()) {
    if (!window->isNonactivating()) return makeKey(*window);
  }
}

void HeadlessWindowSystem::focus(Window* window) {
  if (window == nullptr) {
    keyHolder_ = nullptr;
    keyboardIsElsewhere_ = true;
    application_->keyWindowChanged(nullptr);
    return;
  }
  if (!isOnScreen(*window))
    throw std::logic_error("A window that is not on the screen cannot have the keyboard");
  raise(*window);
  makeKey(*window);
}

void HeadlessWindowSystem::clickDelete(Window& window) {
  if (!isOnScreen(window)) throw std::logic_error("A window that is not on the screen has no close button");
  window.close();
}

void HeadlessWindowSystem::miniaturizeByHand(Window& window, bool miniaturized) {
  if (window.isMiniaturized() == miniaturized) return;
  window.backendSetMiniaturized(miniaturized);
  setMiniaturized(window, miniaturized);
  if (!miniaturized) focus(&window);
}

void HeadlessWindowSystem::setMiniaturized(Window& window, bool miniaturized) {
  if (!miniaturized) return;
  giveUpKey(window);
  if (windowLeftScreen_) windowLeftScreen_(window);
}

void HeadlessWindowSystem::windowGone(Window& window) {
  std::erase(stack_, &window);
  std::erase(keyHistory_, &window);
  dismissSheetsOfClosedWindows();
  giveUpKey(window);
}

std::vector<Window*> HeadlessWindowSystem::frontToBack() const {
  std::vector<Window*> windows;
  std::copy_if(stack_.rbegin(), stack_.rend(), std::back_inserter(windows),
               [this](Window* w) { return isOnScreen(*w); });
  std::stable_sort(windows.begin(), windows.end(),
                   [this](Window* a, Window* b) { return a->level() > b->level(); });
  return windows;
}

SheetId HeadlessWindowSystem::showAlert(const Alert& alert, WeakPtr<Window> sheetOn,
                                        AlertCompletion completion) {
  if (alert.buttons.empty()) throw std::logic_error("An alert without a button cannot be answered");
  alerts_.show(++lastSheet_, alert, sheetOn, std::move(completion));
  return lastSheet_;
}

SheetId HeadlessWindowSystem::showOpenPanel(const OpenPanel& panel, WeakPtr<Window> sheetOn,
                                            OpenPanelCompletion completion) {
  openPanels_.show(++lastSheet_, panel, sheetOn, std::move(completion));
  return lastSheet_;
}

void HeadlessWindowSystem::dismissSheet(SheetId sheet) {
  alerts_.dismiss(sheet);
  openPanels_.dismiss(sheet);
}

void HeadlessWindowSystem::answerAlert(std::size_t button, std::optional<std::string> text) {
  answerAlert([button](const Alert&) { return button; }, std::move(text));
}

void HeadlessWindowSystem::answerAlert(std::string_view buttonTitle, std::optional<std::string> text) {
  const auto indexOf = [buttonTitle](const Alert& alert) {
    return static_cast<std::size_t>(std::find(alert.buttons.begin(), alert.buttons.end(), buttonTitle) -
                                    alert.buttons.begin());
  };
  answerAlert(indexOf, std::move(text));
}

void HeadlessWindowSystem::answerAlert(const std::function<std::size_t(const Alert&)>& button,
                                       std::optional<std::string> text) {
  alerts_.answerOldest([&](const Alert& alert) {
    AlertAnswer answer{button(alert), text.value_or(alert.textField.value_or(""))};
    if (answer.button >= alert.buttons.size()) {
      throw std::logic_error("The alert \"" + alert.messageText + "\" has no such button");
    }
    return answer;
  });
}

void HeadlessWindowSystem::answerOpenPanel(const ChosenFiles& files) {
  openPanels_.answerOldest([&](const OpenPanel& panel) {
    if (files && (files->empty() || (files->size() > 1 && !panel.allowsMultipleSelection))) {
      throw std::logic_error("The person cannot choose that many files");
    }
    return files;
  });
}

void HeadlessWindowSystem::dismissSheetsOfClosedWindows() {
  alerts_.dismissOfClosedWindows();
  openPanels_.dismissOfClosedWindows();
}

std::vector<std::string> HeadlessWindowSystem::unansweredSheets() const {
  std::vector<std::string> lines;
  for (const Alert& alert : alerts_.unanswered()) {
    lines.push_back("Nobody answered the alert \"" + alert.messageText + "\"");
  }
  for (std::size_t i = 0; i < openPanels_.unanswered().size(); ++i) {
    lines.emplace_back("Nobody answered the question for files");
  }
  return lines;
}

}  // namespace velto
