#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/foundation/Date.h"
#include "platform/foundation/JsonError.h"

namespace velto {

class JsonWriter;
/// A value in the text that a `JsonParser` read last.
class JsonElement;

/// Reads JSON texts one after the other in the same memory. A text is strict (RFC 8259, UTF-8, at most 512
/// levels deep); a byte order mark before it is skipped.
class JsonParser {
 public:
  JsonParser();
  JsonParser(const JsonParser&) = delete;
  JsonParser& operator=(const JsonParser&) = delete;
  ~JsonParser();

  /// The value of the whole text, until the next call. Throws `JsonError`.
  const JsonElement& parse(std::string_view text);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Each of these takes just its own type, as `JsonError` tells; null counts as missing. A whole number may be
// written with a fraction of zero or an exponent.
void decodeJson(const JsonElement& element, std::string& value);
void decodeJson(const JsonElement& element, double& value);
void decodeJson(const JsonElement& element, std::int64_t& value);
/// Null is a wrong type here.
void decodeJson(const JsonElement& element, bool& value);
/// A date as `parseIso8601` reads it, of the years 0 to 9999 in UTC.
void decodeJson(const JsonElement& element, WallTime& value);

[[nodiscard]] bool isJsonNull(const JsonElement& element);

/// One member of an object that stands for a record; `JsonRecord.h` makes these.
struct JsonField {
  std::string_view key;
  /// Without it the whole record is refused.
  bool required = true;
  void (*decode)(const JsonElement& element, void* record) = nullptr;
  /// Writes key and value, or nothing when there is no value.
  void (*encode)(JsonWriter& writer, std::string_view key, const void* record) = nullptr;
};

/// All members, in the order in which they are checked.
struct JsonFieldTable {
  static constexpr std::size_t kMaximumFields = 16;
  std::span<const JsonField> fields;
  /// Places in `fields`, in the order of the keys' bytes.
  std::span<const std::uint8_t> sorted;
};

/// Reads an object into a record: unknown keys are ignored, and the first of several equal keys counts.
void decodeJsonObject(const JsonElement& element, const JsonFieldTable& table, void* record);
/// Hands over the number of items of an array, then each of them.
void decodeJsonArray(const JsonElement& element, void* context,
                     void (*begin)(void* context, std::size_t count),
                     void (*item)(void* context, const JsonElement& element));

}  // namespace velto
