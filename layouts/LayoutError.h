#pragma once

#include <stdexcept>

namespace velto {

/// Why a layout cannot be saved or renamed; `what` is worded for the person.
class LayoutError : public std::runtime_error {
 public:
  enum class Kind { noWindowsToCapture, emptyName };

  explicit LayoutError(Kind kind) : std::runtime_error(description(kind)), kind_(kind) {}
  [[nodiscard]] Kind kind() const { return kind_; }

 private:
  static const char* description(Kind kind) {
    switch (kind) {
      case Kind::noWindowsToCapture:
        return "There are no Velto windows with a loaded page to capture, so there is nothing to save.";
      case Kind::emptyName:
        return "A layout needs a name.";
    }
    return "";
  }

  Kind kind_;
};

}  // namespace velto
