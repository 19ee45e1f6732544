#pragma once

#include <stdexcept>

namespace velto {

/// A JSON text that is not what was asked for, or a value that JSON cannot hold. `what()` is worded for the
/// person.
class JsonError : public std::runtime_error {
 public:
  enum class Kind {
    /// No JSON, a value of the wrong type, or a text that is not the date it should be.
    malformed,
    /// A required value is missing or null.
    missing,
    /// A number that is infinite or no number.
    unwritable,
  };
  explicit JsonError(Kind kind) : std::runtime_error(wording(kind)), kind_(kind) {}
  [[nodiscard]] Kind kind() const { return kind_; }

 private:
  static const char* wording(Kind kind) {
    switch (kind) {
      case Kind::malformed:
        return "The data couldn’t be read because it isn’t in the correct format.";
      case Kind::missing:
        return "The data couldn’t be read because it is missing.";
      case Kind::unwritable:
        break;
    }
    return "The data couldn’t be written because it isn’t in the correct format.";
  }

  Kind kind_;
};

}  // namespace velto
