#pragma once

#include <functional>
#include <utility>

namespace velto {

/// An answer that somebody waits for: the first one that is given, or `ifDropped` when none is.
template <class T>
class PendingAnswer {
 public:
  PendingAnswer(T ifDropped, std::function<void(T)> answered)
      : ifDropped_(std::move(ifDropped)), answered_(std::move(answered)) {}
  PendingAnswer(const PendingAnswer&) = delete;
  PendingAnswer& operator=(const PendingAnswer&) = delete;
  ~PendingAnswer() { answer(std::move(ifDropped_)); }

  void answer(T value) {
    if (const auto first = std::exchange(answered_, nullptr)) first(std::move(value));
  }

 private:
  T ifDropped_;
  std::function<void(T)> answered_;
};

}  // namespace velto
