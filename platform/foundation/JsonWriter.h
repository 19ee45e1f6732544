#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velto {

/// Adds the text as JSON writes it, with its quotes: slashes as they are, ill-formed UTF-8 repaired.
void appendJsonString(std::string& out, std::string_view text);

/// Writes one JSON text in the form of all files of the application: two spaces for each level, " : " after a
/// key, one item on a line, slashes as they are, no line end after the last line. An empty array or object
/// holds one empty line.
///
/// The caller gives keys in the order of their bytes and closes what it opened.
class JsonWriter {
 public:
  void beginObject() { begin('{'); }
  void endObject() { end('}'); }
  void beginArray() { begin('['); }
  void endArray() { end(']'); }
  void key(std::string_view name);

  /// Ill-formed UTF-8 is repaired, so that what was written can be read again.
  void string(std::string_view text);
  void boolean(bool value);
  void integer(std::int64_t value);
  /// The shortest digits that read back as the same number; whole ones without a decimal point. Throws
  /// `JsonError` for what is no finite number.
  void number(double value);

  /// The text so far.
  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  void begin(char bracket);
  void end(char bracket);
  /// What stands before a key, or before a value that has none.
  void separate();
  void newLine();

  std::string text_;
  std::size_t depth_ = 0;
  bool containerIsEmpty_ = true;
  bool followsKey_ = false;
};

}  // namespace velto
