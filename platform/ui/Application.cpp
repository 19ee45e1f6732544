#include "platform/ui/Application.h"

#include <utility>

namespace velto {

std::optional<Screen> Application::mainScreen() const {
  auto all = screens();
  if (all.empty()) return std::nullopt;
  return std::move(all.front());
}

void Application::launch() {
  if (!delegate_) return;
  delegate_->applicationWillFinishLaunching();
  delegate_->applicationOpenUntitledFile();
  delegate_->applicationDidFinishLaunching();
}

void Application::terminate() {
  if (std::exchange(terminating_, true)) return;
  if (delegate_) delegate_->applicationWillTerminate();
  windowSystem_.stop();
}

void Application::windowRemoved(Window& window) {
  std::erase(windows_, &window);
  if (keyWindow_ == &window) keyWindow_ = nullptr;
}

void Application::keyWindowChanged(Window* window) {
  if (window == keyWindow_) return;
  const bool wasActive = isActive();
  keyWindow_ = window;
  if (window != nullptr) window->backendBecameKey();
  if (!wasActive && isActive() && delegate_) delegate_->applicationDidBecomeActive();
}

}  // namespace velto
