#pragma once

#include <string>
#include <string_view>

namespace velto {

/// `text` as one line: every control character becomes a blank, so that a path or a foreign reason can
/// neither break a message into several nor drive the terminal it is shown on.
inline std::string oneLine(std::string_view text) {
  std::string line(text);
  for (char& character : line) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7f) character = ' ';
  }
  return line;
}

}  // namespace velto
