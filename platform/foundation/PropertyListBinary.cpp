#include "platform/foundation/PropertyListBinary.h"

#include <bit>
#include <exception>
#include <string>

#include <unicode/unistr.h>

#include "platform/foundation/Text.h"

namespace velto {
namespace {

constexpr int kMaximumDepth = 128;
/// What the values may take unfolded: an object may be referred to many times, so a short file can spell a
/// huge tree.
constexpr std::size_t kMaximumUnfoldedSize = std::size_t{64} * 1024 * 1024;
constexpr std::size_t kCostOfValue = 64;
constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kTrailerSize = 32;

/// Thrown and caught in this file when the bytes are not what they should be.
struct Malformed : std::exception {};

class BinaryReader {
 public:
  explicit BinaryReader(std::string_view bytes) : bytes_(bytes) {}

  PropertyList read() {
    if (bytes_.size() < kHeaderSize + kTrailerSize) throw Malformed();
    const std::size_t trailer = bytes_.size() - kTrailerSize;
    offsetSize_ = number(trailer + 6, 1);
    referenceSize_ = number(trailer + 7, 1);
    objectCount_ = number(trailer + 8, 8);
    const std::uint64_t top = number(trailer + 16, 8);
    offsetTable_ = number(trailer + 24, 8);
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8 ||
        offsetTable_ > trailer || objectCount_ > (trailer - offsetTable_) / offsetSize_) {
      throw Malformed();
    }
    return object(top, 0);
  }

 private:
  /// Where the contents of an object lie and how many bytes or items they are.
  struct Contents {
    std::size_t start = 0;
    std::size_t count = 0;
  };

  [[nodiscard]] std::string_view slice(std::size_t start, std::size_t length) const {
    if (start > bytes_.size() || length > bytes_.size() - start) throw Malformed();
    return bytes_.substr(start, length);
  }

  /// An unsigned number, the highest byte first. `length` is at most 8.
  [[nodiscard]] std::uint64_t number(std::size_t start, std::size_t length) const {
    std::uint64_t value = 0;
    for (const char c : slice(start, length)) value = (value << 8U) | static_cast<unsigned char>(c);
    return value;
  }

  void spend(std::size_t size) {
    if (size > budget_) throw Malformed();
    budget_ -= size;
  }

  [[nodiscard]] Contents contents(std::size_t position, unsigned low) const {
    if (low != 0xf) return {position + 1, low};
    const auto marker = static_cast<unsigned>(number(position + 1, 1));
    const std::size_t size = std::size_t{1} << (marker & 0xfU);
    if (marker >> 4U != 1 || size > 8) throw Malformed();
    return {position + 2 + size, number(position + 2, size)};
  }

  PropertyList object(std::uint64_t index, int depth) {
    if (index >= objectCount_ || depth >= kMaximumDepth) throw Malformed();
    spend(kCostOfValue);
    const std::size_t position = number(offsetTable_ + index * offsetSize_, offsetSize_);
    const auto marker = static_cast<unsigned>(number(position, 1));
    const unsigned low = marker & 0xfU;
    switch (marker >> 4U) {
      case 0x0:
        return flag(low);
      case 0x1:
        return integer(position + 1, low);
      case 0x2:
        return real(position + 1, low);
      case 0x3:
        return date(position + 1, low);
      case 0x4:
        return data(contents(position, low));
      case 0x5:
        return asciiText(contents(position, low));
      case 0x6:
        return wideText(contents(position, low));
      case 0xa:
        return array(contents(position, low), depth);
      case 0xd:
        return dictionary(contents(position, low), depth);
      default:
        throw Malformed();
    }
  }

  static PropertyList flag(unsigned low) {
    if (low != 0x8 && low != 0x9) throw Malformed();
    return low == 0x9;
  }

  [[nodiscard]] PropertyList integer(std::size_t start, unsigned low) const {
    if (low > 4) throw Malformed();
    if (low < 4) return static_cast<std::int64_t>(number(start, std::size_t{1} << low));
    const auto high = static_cast<std::int64_t>(number(start, 8));
    const std::uint64_t rest = number(start + 8, 8);
    const auto narrow = static_cast<std::int64_t>(rest);
    if (high == (narrow < 0 ? -1 : 0)) return narrow;
    return static_cast<double>(high) * 18446744073709551616.0 + static_cast<double>(rest);
  }

  [[nodiscard]] PropertyList real(std::size_t start, unsigned low) const {
    if (low == 2)
      return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(number(start, 4))));
    if (low == 3) return std::bit_cast<double>(number(start, 8));
    throw Malformed();
  }

  [[nodiscard]] PropertyList date(std::size_t start, unsigned low) const {
    constexpr double kReferenceDate = 978307200;
    if (low != 3) throw Malformed();
    return WallTime{std::bit_cast<double>(number(start, 8)) + kReferenceDate};
  }

  PropertyList data(Contents where) {
    const std::string_view bytes = slice(where.start, where.count);
    spend(bytes.size());
    return PropertyList::Data(bytes.begin(), bytes.end());
  }

  PropertyList asciiText(Contents where) {
    const std::string_view bytes = slice(where.start, where.count);
    spend(bytes.size());
    return repairUtf8(bytes);
  }

  PropertyList wideText(Contents where) {
    if (where.count > bytes_.size() / 2) throw Malformed();
    const std::string_view bytes = slice(where.start, 2 * where.count);
    spend(2 * bytes.size());
    std::u16string units;
    units.reserve(where.count);
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
      units += static_cast<char16_t>(number(where.start + i, 2));
    }
    std::string text;
    icu::UnicodeString(units.data(), static_cast<std::int32_t>(units.size())).toUTF8String(text);
    return text;
  }

  PropertyList array(Contents where, int depth) {
    PropertyList::Array items;
    for (std::size_t i = 0; i < where.count; ++i) {
      items.push_back(object(number(where.start + i * referenceSize_, referenceSize_), depth + 1));
    }
    return items;
  }

  PropertyList dictionary(Contents where, int depth) {
    if (where.count > bytes_.size()) throw Malformed();
    PropertyList::Dictionary items;
    const std::size_t values = where.start + where.count * referenceSize_;
    for (std::size_t i = 0; i < where.count; ++i) {
      const PropertyList key = object(number(where.start + i * referenceSize_, referenceSize_), depth + 1);
      const auto* name = key.as<std::string>();
      if (name == nullptr) throw Malformed();
      items.insert_or_assign(*name, object(number(values + i * referenceSize_, referenceSize_), depth + 1));
    }
    return items;
  }

  std::string_view bytes_;
  std::size_t offsetSize_ = 0;
  std::size_t referenceSize_ = 0;
  std::size_t objectCount_ = 0;
  std::size_t offsetTable_ = 0;
  std::size_t budget_ = kMaximumUnfoldedSize;
};

}  // namespace

std::optional<PropertyList> readBinaryPropertyList(std::string_view bytes) {
  try {
    return BinaryReader(bytes).read();
  } catch (const Malformed&) {
    return std::nullopt;
  }
}

}  // namespace velto
