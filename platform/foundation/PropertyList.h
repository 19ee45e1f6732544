#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/foundation/Date.h"

namespace velto {

/// A value of a property list, the format of the preferences. An integer is not a boolean and not a real.
class PropertyList {
 public:
  using Data = std::vector<std::uint8_t>;
  using Array = std::vector<PropertyList>;
  using Dictionary = std::map<std::string, PropertyList>;
  using Storage = std::variant<bool, std::int64_t, double, std::string, Data, WallTime, Array, Dictionary>;

  PropertyList(bool value) : storage_(value) {}          // NOLINT(google-explicit-constructor)
  PropertyList(std::int64_t value) : storage_(value) {}  // NOLINT(google-explicit-constructor)
  PropertyList(int value)
      : storage_(static_cast<std::int64_t>(value)) {}                // NOLINT(google-explicit-constructor)
  PropertyList(double value) : storage_(value) {}                    // NOLINT(google-explicit-constructor)
  PropertyList(std::string value) : storage_(std::move(value)) {}    // NOLINT(google-explicit-constructor)
  PropertyList(const char* value) : storage_(std::string(value)) {}  // NOLINT(google-explicit-constructor)
  PropertyList(Data value) : storage_(std::move(value)) {}           // NOLINT(google-explicit-constructor)
  PropertyList(WallTime value) : storage_(value) {}                  // NOLINT(google-explicit-constructor)
  PropertyList(Array value) : storage_(std::move(value)) {}          // NOLINT(google-explicit-constructor)
  PropertyList(Dictionary value) : storage_(std::move(value)) {}     // NOLINT(google-explicit-constructor)

  /// The value when it has exactly this type, else null.
  template <class T>
  [[nodiscard]] const T* as() const {
    return std::get_if<T>(&storage_);
  }

  /// True or false for a boolean, and for a number that is exactly 1 or 0.
  [[nodiscard]] std::optional<bool> asBool() const;
  /// A whole number in range; a boolean counts as 1 or 0, a real counts when it is whole, and so does a text
  /// that is a whole number and nothing else.
  [[nodiscard]] std::optional<std::int64_t> asInteger() const;
  /// A real or a whole number; a boolean counts as 1 or 0, and so does a text that is a decimal number and
  /// nothing else.
  [[nodiscard]] std::optional<double> asDouble() const;

  bool operator==(const PropertyList&) const = default;

 private:
  Storage storage_;
};

/// Reads an XML or binary property list. Absent when the bytes are neither, or when they are beyond reason:
/// 16 MiB of XML, 128 levels, 64 MiB once shared values are unfolded. Of several values with one key the last
/// one counts. A whole number beyond 64 bits with a sign becomes a real. Safe for bytes of any origin:
/// nothing outside of them is looked up.
std::optional<PropertyList> readPropertyList(std::string_view bytes);

/// The XML form: sorted keys, tab indent, 17 significant digits, trailing newline. It reads back within those
/// bounds: characters that XML cannot hold become U+FFFD, dates lose their fraction and are held between the
/// years 1 and 9999.
std::string writePropertyList(const PropertyList& value);

}  // namespace velto
