#include "platform/foundation/NotificationCenter.h"

#include <algorithm>

namespace velto {

Subscription& Subscription::operator=(Subscription&& other) noexcept {
  if (this != &other) {
    reset();
    end_ = std::exchange(other.end_, nullptr);
  }
  return *this;
}

void Subscription::reset() {
  if (const auto end = std::exchange(end_, nullptr)) end();
}

struct NotificationCenter::Observers {
  struct Observer {
    std::string name;
    std::function<void()> call;
    bool ended = false;
  };
  std::vector<std::shared_ptr<Observer>> list;
};

NotificationCenter::NotificationCenter() : observers_(std::make_shared<Observers>()) {}

NotificationCenter::~NotificationCenter() {
  for (const auto& observer : observers_->list) observer->ended = true;
}

Subscription NotificationCenter::observe(std::string_view name, std::function<void()> observer) {
  auto added = std::make_shared<Observers::Observer>(
      Observers::Observer{.name = std::string(name), .call = std::move(observer)});
  observers_->list.push_back(added);
  return Subscription([observers = std::weak_ptr(observers_), added = std::weak_ptr(added)] {
    const auto ended = added.lock();
    const auto all = observers.lock();
    if (!ended || !all) return;
    ended->ended = true;
    std::erase(all->list, ended);
  });
}

void NotificationCenter::post(std::string_view name) {
  std::vector<std::shared_ptr<Observers::Observer>> called;
  std::copy_if(observers_->list.begin(), observers_->list.end(), std::back_inserter(called),
               [&](const auto& observer) { return observer->name == name; });
  for (const auto& observer : called) {
    if (!observer->ended) observer->call();
  }
}

}  // namespace velto
