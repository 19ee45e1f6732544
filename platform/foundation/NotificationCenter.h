#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velto {

/// Ends what it stands for when it is destroyed or reset. Empty by default, movable, not copyable.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::function<void()> end) : end_(std::move(end)) {}
  Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept;
  ~Subscription() { reset(); }
  void reset();

 private:
  std::function<void()> end_;
};

/// Named announcements inside the program. Main thread only.
class NotificationCenter {
 public:
  NotificationCenter();
  ~NotificationCenter();

  /// The observer is called for each post of that name until the subscription ends. It may outlive the
  /// center.
  [[nodiscard]] Subscription observe(std::string_view name, std::function<void()> observer);
  /// Calls the observers of the name in the order in which they were added, before it returns. One added
  /// meanwhile is first called at the next post; one removed meanwhile is not called any more.
  void post(std::string_view name);

 private:
  struct Observers;
  std::shared_ptr<Observers> observers_;
};

}  // namespace velto
