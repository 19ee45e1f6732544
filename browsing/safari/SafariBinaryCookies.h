#pragma once

#include <stdexcept>
#include <string_view>
#include <vector>

#include "browsing/safari/SafariCookie.h"

/// Safari's cookie file: a table of pages with big-endian numbers, and in each page little-endian records.
namespace velto::SafariBinaryCookies {

/// What makes the file as a whole unreadable. Its text is for the log only.
class ParseError : public std::runtime_error {
 public:
  enum class Kind { notACookieFile, truncated };
  explicit ParseError(Kind kind);
  [[nodiscard]] Kind kind() const { return kind_; }

 private:
  Kind kind_;
};

/// The cookies in the order of the file, duplicates included. A record that is damaged is left out, and the
/// others are read; damage to the table of pages throws `ParseError`.
///
/// Safe for bytes of any origin: records may overlap, but reading ends once twice the bytes of the file and a
/// megabyte have been gone through, which no file made by Safari comes near.
std::vector<SafariCookie> parse(std::string_view bytes);

}  // namespace velto::SafariBinaryCookies
