#pragma once

#include <utility>

#include <unistd.h>

namespace velto {

/// A file descriptor that is closed with its owner; -1 is none.
class OwnedDescriptor {
 public:
  OwnedDescriptor() = default;
  explicit OwnedDescriptor(int descriptor) : descriptor_(descriptor) {}
  OwnedDescriptor(OwnedDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept {
    if (this != &other) {
      close();
      descriptor_ = std::exchange(other.descriptor_, -1);
    }
    return *this;
  }
  ~OwnedDescriptor() { close(); }

  [[nodiscard]] int get() const { return descriptor_; }
  [[nodiscard]] bool valid() const { return descriptor_ >= 0; }
  void close() {
    if (const int descriptor = std::exchange(descriptor_, -1); descriptor >= 0) ::close(descriptor);
  }

 private:
  int descriptor_ = -1;
};

}  // namespace velto
