#include "browsing/safari/SafariBinaryCookies.h"

#include <algorithm>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "platform/foundation/Text.h"

namespace velto::SafariBinaryCookies {
namespace {

constexpr std::string_view kMagic = "cook";
constexpr std::size_t kPageSizes = 8;
constexpr std::size_t kRecordOffsets = 8;
constexpr std::size_t kSmallestRecord = 56;
/// A record, its four ends of strings and its entry in the page's table.
constexpr std::size_t kSmallestShare = kSmallestRecord + 4 + 4;
constexpr std::size_t kWorkBesidesTheFile = std::size_t{1} << 20U;

static_assert(std::endian::native == std::endian::little);

enum class Order { bigEndian, littleEndian };

/// The bytes, of which everything outside reads as absent. Offsets are sums of a few 32-bit numbers and
/// positions in the file, which 64 bits hold without an overflow.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}
  [[nodiscard]] std::size_t size() const { return bytes_.size(); }

  [[nodiscard]] std::optional<std::uint32_t> readUInt32(std::size_t offset, Order order) const {
    const auto value = readPlain<std::uint32_t>(offset);
    return value && order == Order::bigEndian ? std::optional(__builtin_bswap32(*value)) : value;
  }
  [[nodiscard]] std::optional<double> readDouble(std::size_t offset) const {
    return readPlain<double>(offset);
  }
  /// The bytes between start and end, as far as they are in the file.
  [[nodiscard]] std::string_view between(std::size_t start, std::size_t end) const {
    return end > start && end <= size() ? bytes_.substr(start, end - start) : std::string_view();
  }

 private:
  template <class Plain>
  [[nodiscard]] std::optional<Plain> readPlain(std::size_t offset) const {
    if (offset + sizeof(Plain) > size()) return std::nullopt;
    Plain value;
    std::memcpy(&value, bytes_.data() + offset, sizeof(Plain));
    return value;
  }

  std::string_view bytes_;
};

class Parser {
 public:
  explicit Parser(std::string_view bytes) : bytes_(bytes), work_(2 * bytes.size() + kWorkBesidesTheFile) {}

  std::vector<SafariCookie> parse() {
    const std::uint32_t pages = bytes_.readUInt32(4, Order::bigEndian).value_or(0);
    std::size_t page = kPageSizes + 4 * std::size_t{pages};
    if (page > bytes_.size()) throw ParseError(ParseError::Kind::truncated);
    cookies_.reserve(likelyCount(pages));
    for (std::uint32_t number = 0; number < pages; ++number) {
      const std::size_t end = page + pageSize(number);
      if (end > bytes_.size()) throw ParseError(ParseError::Kind::truncated);
      parsePage(page, end);
      page = end;
    }
    return std::move(cookies_);
  }

 private:
  [[nodiscard]] std::size_t pageSize(std::uint32_t number) const {
    return bytes_.readUInt32(kPageSizes + 4 * std::size_t{number}, Order::bigEndian).value_or(0);
  }

  /// What the pages tell, as far as their sizes leave room for it.
  [[nodiscard]] std::size_t likelyCount(std::uint32_t pages) const {
    std::size_t count = 0;
    std::size_t page = kPageSizes + 4 * std::size_t{pages};
    for (std::uint32_t number = 0; number < pages && page < bytes_.size(); ++number) {
      const std::size_t size = std::min(pageSize(number), bytes_.size() - page);
      count += std::min<std::size_t>(bytes_.readUInt32(page + 4, Order::littleEndian).value_or(0),
                                     size / kSmallestShare);
      page += size;
    }
    return count;
  }

  void parsePage(std::size_t page, std::size_t end) {
    const std::uint32_t count = bytes_.readUInt32(page + 4, Order::littleEndian).value_or(0);
    for (std::uint32_t number = 0; number < count; ++number) {
      const auto offset =
          bytes_.readUInt32(page + kRecordOffsets + 4 * std::size_t{number}, Order::littleEndian);
      if (!offset || !spend(4)) return;
      parseCookie(page + *offset, end);
    }
  }

  void parseCookie(std::size_t record, std::size_t pageEnd) {
    const std::uint32_t size = bytes_.readUInt32(record, Order::littleEndian).value_or(0);
    if (size < kSmallestRecord || record + size > pageEnd || !spend(kSmallestRecord)) return;
    const std::size_t end = record + size;
    const auto domain = readString(record, 16, end);
    if (!domain || domain->empty()) return;
    const auto name = readString(record, 20, end);
    if (!name || name->empty()) return;
    const auto path = readString(record, 24, end);
    if (!path) return;
    const auto value = readString(record, 28, end);
    if (!value) return;
    SafariCookie& cookie = cookies_.emplace_back();
    cookie.domain = repairUtf8(*domain);
    cookie.name = repairUtf8(*name);
    cookie.path = path->empty() ? "/" : repairUtf8(*path);
    cookie.value = repairUtf8(*value);
    readNumbers(record, cookie);
  }

  void readNumbers(std::size_t record, SafariCookie& cookie) const {
    const std::uint32_t flags = bytes_.readUInt32(record + 8, Order::littleEndian).value_or(0);
    const double created = bytes_.readDouble(record + 48).value_or(0);
    cookie.isSecure = (flags & 1U) != 0;
    cookie.isHTTPOnly = (flags & 4U) != 0;
    cookie.sameSite = static_cast<SafariCookieSameSite>((flags >> 3U) & 3U);
    cookie.expires = sinceReferenceDate(bytes_.readDouble(record + 40).value_or(0));
    if (created > 0) cookie.created = sinceReferenceDate(created);
  }

  /// The string whose offset in the record stands at `field`; absent when it does not end in the record.
  std::optional<std::string_view> readString(std::size_t record, std::size_t field, std::size_t end) {
    const std::size_t offset = bytes_.readUInt32(record + field, Order::littleEndian).value_or(0);
    const std::string_view rest = bytes_.between(record + offset, end);
    const std::size_t length = rest.find('\0');
    if (!spend(std::min(length, rest.size())) || length == std::string_view::npos) return std::nullopt;
    return rest.substr(0, length);
  }

  /// False, and nothing more is read, once the work has come to more than the file can be worth.
  bool spend(std::size_t bytes) {
    work_ -= std::min(bytes, work_);
    return work_ > 0;
  }

  Bytes bytes_;
  std::size_t work_;
  std::vector<SafariCookie> cookies_;
};

}  // namespace

ParseError::ParseError(Kind kind)
    : std::runtime_error(kind == Kind::truncated ? "the cookie file is cut off" : "this is no cookie file"),
      kind_(kind) {}

std::vector<SafariCookie> parse(std::string_view bytes) {
  if (bytes.size() < kPageSizes || !bytes.starts_with(kMagic)) {
    throw ParseError(ParseError::Kind::notACookieFile);
  }
  return Parser(bytes).parse();
}

}  // namespace velto::SafariBinaryCookies
