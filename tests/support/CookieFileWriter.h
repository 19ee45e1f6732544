#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "browsing/safari/SafariCookie.h"

namespace velto {

/// Writes the low bytes of a number over those at the offset.
inline void putLittle(std::string& bytes, std::size_t offset, std::uint64_t value, std::size_t size = 4) {
  for (std::size_t i = 0; i < size; ++i) bytes.at(offset + i) = static_cast<char>(value >> (8 * i));
}

inline std::string bigEndian(std::size_t value) {
  return {static_cast<char>(value >> 24U), static_cast<char>(value >> 16U), static_cast<char>(value >> 8U),
          static_cast<char>(value)};
}

/// A record of Safari's cookie file, as Safari writes it.
inline std::string cookieRecord(const SafariCookie& cookie) {
  constexpr std::size_t kHead = 56;
  std::string record(kHead, '\0');
  std::size_t field = 16;
  for (const std::string* text : {&cookie.domain, &cookie.name, &cookie.path, &cookie.value}) {
    putLittle(record, field, record.size());
    record += *text + '\0';
    field += 4;
  }
  const auto seconds = [](WallTime time) {
    return std::bit_cast<std::uint64_t>(secondsSinceReferenceDate(time));
  };
  putLittle(record, 0, record.size());
  putLittle(record, 8,
            (cookie.isSecure ? 1U : 0U) | (cookie.isHTTPOnly ? 4U : 0U) |
                static_cast<unsigned>(cookie.sameSite) << 3U);
  putLittle(record, 40, seconds(cookie.expires), 8);
  if (cookie.created) putLittle(record, 48, seconds(*cookie.created), 8);
  return record;
}

/// A page of records, with its table and the zero that ends it.
inline std::string cookiePage(const std::vector<std::string>& records) {
  std::string page = {0, 0, 1, 0};
  page.resize(12 + 4 * records.size());
  putLittle(page, 4, records.size());
  std::size_t entry = 8;
  for (const std::string& record : records) {
    putLittle(page, entry, page.size());
    page += record;
    entry += 4;
  }
  return page;
}

/// The file, with eight bytes in place of what follows the pages.
inline std::string cookieFile(const std::vector<std::string>& pages) {
  std::string file = "cook" + bigEndian(pages.size());
  for (const std::string& page : pages) file += bigEndian(page.size());
  for (const std::string& page : pages) file += page;
  return file + "checksum";
}

inline std::string cookieFile(const std::vector<SafariCookie>& cookies) {
  std::vector<std::string> records;
  for (const SafariCookie& cookie : cookies) records.push_back(cookieRecord(cookie));
  return cookieFile(std::vector{cookiePage(records)});
}

}  // namespace velto
