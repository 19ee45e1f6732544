#pragma once

#include <memory>
#include <type_traits>

namespace velto {

/// Base of everything that others may refer to without keeping it alive. A copy is a new object with
/// references of its own. Objects and their weak references live on one thread.
class Weakable {
 public:
  Weakable() : alive_(std::make_shared<char>()) {}
  Weakable(const Weakable&) : Weakable() {}
  Weakable& operator=(const Weakable&) { return *this; }

 protected:
  ~Weakable() = default;

  /// Makes every weak reference empty before the object's destructor is over; for classes whose destructor
  /// calls out.
  void invalidateWeakReferences() { alive_ = std::make_shared<char>(); }

 private:
  template <class T>
  friend class WeakPtr;
  std::shared_ptr<char> alive_;
};

/// A reference that becomes empty when its object is destroyed. Every delayed or asynchronous step holds one
/// of these.
template <class T>
class WeakPtr {
 public:
  WeakPtr() = default;
  WeakPtr(std::nullptr_t) {}  // NOLINT(google-explicit-constructor): absence reads as nullptr
  WeakPtr(T& object) : object_(&object), alive_(tokenOf(object)) {}  // NOLINT(google-explicit-constructor)
  WeakPtr(T* object) {                                               // NOLINT(google-explicit-constructor)
    if (object != nullptr) *this = WeakPtr(*object);
  }
  template <class U>
  requires std::is_convertible_v<U*, T*> WeakPtr(const WeakPtr<U>& other)
      : object_(other.object_), alive_(other.alive_) {}  // NOLINT

  [[nodiscard]] T* get() const { return alive_.expired() ? nullptr : object_; }
  T* operator->() const { return get(); }
  T& operator*() const { return *get(); }
  explicit operator bool() const { return get() != nullptr; }
  bool operator==(const WeakPtr& other) const { return get() == other.get(); }

 private:
  template <class U>
  friend class WeakPtr;
  static std::weak_ptr<char> tokenOf(const Weakable& object) { return object.alive_; }

  T* object_ = nullptr;
  std::weak_ptr<char> alive_;
};

}  // namespace velto
