#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace velto {

/// A JSON value as read from a file. Numbers keep whether they were written as whole numbers.
class JsonValue {
 public:
  using Array = std::vector<JsonValue>;
  /// In the order of the text; the first of several members with one name is the one that counts.
  using Object = std::vector<std::pair<std::string, JsonValue>>;
  using Storage = std::variant<std::monostate, bool, std::int64_t, double, std::string, Array, Object>;

  explicit JsonValue(Storage storage) : storage_(std::move(storage)) {}

  template <class T>
  [[nodiscard]] const T* as() const {
    return std::get_if<T>(&storage_);
  }
  [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(storage_); }
  /// The member of an object; null when this is no object or has no such member.
  [[nodiscard]] const JsonValue* member(std::string_view name) const;

  bool operator==(const JsonValue&) const = default;

 private:
  Storage storage_;
};

/// Reads one strict JSON text (RFC 8259, UTF-8, at most 512 levels deep). Absent when it is anything else.
std::optional<JsonValue> readJson(std::string_view text);

}  // namespace velto
