#include "browsing/history/HistoryFormat.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>

#include "platform/foundation/JsonParser.h"
#include "platform/foundation/JsonWriter.h"

namespace velto {
namespace {

using Step = HistoryScanner::Step;

/// What stands around the values. The quotes belong to it.
struct Surroundings {
  std::string_view open, beforeUrl, beforeTitle, beforeTime, afterTime, between, close, empty, ending;
};

constexpr Surroundings kPretty = {.open = "[\n",
                                  .beforeUrl = "  {\n    \"url\" : \"",
                                  .beforeTitle = "\",\n    \"title\" : \"",
                                  .beforeTime = "\",\n    \"timestamp\" : \"",
                                  .afterTime = "\"\n  }",
                                  .between = ",\n",
                                  .close = "\n]",
                                  .empty = "[\n\n]",
                                  .ending = "\"\n  }\n]"};
constexpr Surroundings kCompact = {.open = "[",
                                   .beforeUrl = "{\"url\":\"",
                                   .beforeTitle = "\",\"title\":\"",
                                   .beforeTime = "\",\"timestamp\":\"",
                                   .afterTime = "\"}",
                                   .between = ",",
                                   .close = "]",
                                   .empty = "[]",
                                   .ending = "\"}]"};

constexpr const Surroundings& surroundings(HistoryForm form) {
  return form == HistoryForm::pretty ? kPretty : kCompact;
}

// What a reader takes for a date.
constexpr double kEarliest = -62167392000;  // 0000-01-01T00:00:00Z
constexpr double kLatest = 253402300799;    // 9999-12-31T23:59:59Z
/// "2024-01-02T03:04:05Z"
constexpr std::size_t kTimeLength = 20;

void appendEntry(std::string& out, const HistoryEntry& entry, const Surroundings& around) {
  const auto appendText = [&out](std::string_view before, const std::string& text) {
    out.append(before.substr(0, before.size() - 1));
    appendJsonString(out, text);
  };
  appendText(around.beforeUrl, entry.url);
  appendText(around.beforeTitle.substr(1), entry.title);
  out.append(around.beforeTime.substr(1)).append(formatIso8601(readableHistoryTime(entry.timestamp)));
  out.append(around.afterTime);
}

/// Passes the expected bytes.
inline Step expect(std::string_view part, std::size_t& at, std::string_view expected) {
  if (part.size() - at < expected.size()) {
    return expected.starts_with(part.substr(at)) ? Step::cutOff : Step::foreign;
  }
  if (std::memcmp(part.data() + at, expected.data(), expected.size()) != 0) return Step::foreign;
  at += expected.size();
  return Step::entry;
}

/// Marks the high bit of each of eight bytes that ends a run of those that stand for themselves: a quote, a
/// backslash, a control character. A mark above the lowest one may be wrong.
constexpr std::uint64_t specials(std::uint64_t word) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  const auto below = [](std::uint64_t bytes, std::uint64_t limit) {
    return (bytes - kOnes * limit) & ~bytes & (kOnes * 0x80);
  };
  return below(word ^ (kOnes * '"'), 1) | below(word ^ (kOnes * '\\'), 1) | below(word, 0x20);
}

/// Passes the bytes that stand for themselves.
void passPlain(std::string_view part, std::size_t& at) {
  static_assert(std::endian::native == std::endian::little, "the lowest byte is the first");
  std::uint64_t word = 0;
  for (; at + sizeof(word) <= part.size(); at += sizeof(word)) {
    std::memcpy(&word, part.data() + at, sizeof(word));
    if (const std::uint64_t marks = specials(word); marks != 0) {
      at += static_cast<std::size_t>(std::countr_zero(marks)) / 8;
      return;
    }
  }
  while (at < part.size() && part[at] != '"' && part[at] != '\\' &&
         static_cast<unsigned char>(part[at]) >= 0x20)
    ++at;
}

/// What the letter behind a backslash stands for; 0 for one that stands for nothing.
constexpr char shortMeaning(char letter) {
  switch (letter) {
    case '"':
    case '\\':
      return letter;
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return 0;
  }
}
constexpr std::string_view kCodeEscape = "\\u00";
constexpr std::size_t kCodeEscapeLength = 6;

/// The control character that is written by its number.
char codeMeaning(std::string_view digits) {
  unsigned code = 0;
  std::from_chars(digits.data(), digits.data() + 2, code, 16);
  return static_cast<char>(code);
}

constexpr bool hasShortEscape(char c) {
  return c == '\b' || c == '\f' || c == '\n' || c == '\r' || c == '\t';
}

/// Passes an escape in the one way in which it is written.
Step passEscape(std::string_view part, std::size_t& at) {
  if (part.size() - at < 2) return Step::cutOff;
  if (shortMeaning(part[at + 1]) != 0) {
    at += 2;
    return Step::entry;
  }
  std::size_t digits = at;
  if (const Step step = expect(part, digits, kCodeEscape); step != Step::entry) return step;
  if (part.size() - digits < 2) return Step::cutOff;
  const char high = part[digits];
  const char low = part[digits + 1];
  const bool isHex =
      (high == '0' || high == '1') && ((low >= '0' && low <= '9') || (low >= 'a' && low <= 'f'));
  if (!isHex || hasShortEscape(codeMeaning(part.substr(digits, 2)))) {
    return Step::foreign;
  }
  at += kCodeEscapeLength;
  return Step::entry;
}

/// Passes a text up to its closing quote.
Step scanText(std::string_view part, std::size_t& at, std::string_view& text) {
  const std::size_t start = at;
  for (;;) {
    passPlain(part, at);
    if (at == part.size()) return Step::cutOff;
    if (part[at] == '"') break;
    if (part[at] != '\\') return Step::foreign;
    if (const Step step = passEscape(part, at); step != Step::entry) return step;
  }
  text = part.substr(start, at - start);
  return Step::entry;
}

/// The number that the two digits spell; 100 and more when they are none.
unsigned twoDigits(const char* digits) {
  const auto tens = static_cast<unsigned>(digits[0] - '0');
  const auto ones = static_cast<unsigned>(digits[1] - '0');
  return tens > 9 || ones > 9 ? 100 : 10 * tens + ones;
}

std::string unescaped(std::string_view written) {
  std::size_t escape = written.find('\\');
  if (escape == std::string_view::npos) return std::string(written);
  std::string out;
  out.reserve(written.size());
  while (escape != std::string_view::npos) {
    out.append(written.substr(0, escape));
    const char meaning = shortMeaning(written[escape + 1]);
    out += meaning != 0 ? meaning : codeMeaning(written.substr(escape + kCodeEscape.size(), 2));
    written.remove_prefix(escape + (meaning != 0 ? 2 : kCodeEscapeLength));
    escape = written.find('\\');
  }
  return out.append(written);
}

}  // namespace

WallTime readableHistoryTime(WallTime time) {
  return {std::clamp(time.secondsSince1970, kEarliest, kLatest)};
}

std::string encodeHistory(std::span<const HistoryEntry> entries, HistoryForm form) {
  const Surroundings& around = surroundings(form);
  if (entries.empty()) return std::string(around.empty);
  return encodeHistoryBeginning(entries, false, form).append(around.close);
}

std::string encodeHistoryBeginning(std::span<const HistoryEntry> entries, bool entryFollows,
                                   HistoryForm form) {
  const Surroundings& around = surroundings(form);
  std::string text(around.open);
  for (const HistoryEntry& entry : entries) {
    if (&entry != &entries.front()) text.append(around.between);
    appendEntry(text, entry, around);
  }
  return entryFollows ? text.append(around.between) : text;
}

std::string_view historyEnding(HistoryForm form) { return surroundings(form).ending; }

std::vector<HistoryEntry> decodeHistory(std::string_view text) {
  JsonParser parser;
  std::vector<HistoryEntry> entries;
  decodeJson(parser.parse(text), entries);
  return entries;
}

HistoryEntry readEntry(const WrittenHistoryEntry& written) {
  return {unescaped(written.url), unescaped(written.title), written.timestamp};
}

void HistoryScanner::more(std::string_view part) {
  part_ = part;
  position_ = 0;
}

HistoryScanner::Step HistoryScanner::next() {
  return form_ == HistoryForm::pretty ? nextIn<HistoryForm::pretty>() : nextIn<HistoryForm::compact>();
}

// For each form on its own, so that the compiler knows the texts that it compares with.
template <HistoryForm form>
HistoryScanner::Step HistoryScanner::nextIn() {
  constexpr const Surroundings& kAround = surroundings(form);
  // An array may end wherever an entry may stand.
  std::size_t at = position_;
  Step step = expect(part_, at, anyEntry_ ? kAround.close : kAround.empty);
  if (step == Step::entry) {
    position_ = at;
    return at == part_.size() ? Step::end : Step::foreign;
  }
  if (step == Step::foreign) step = expect(part_, at, anyEntry_ ? kAround.between : kAround.open);
  entryPosition_ = at;
  if (step == Step::entry) step = scanEntry<form>(at);
  if (step == Step::entry) {
    position_ = at;
    anyEntry_ = true;
  }
  return step;
}

template <HistoryForm form>
HistoryScanner::Step HistoryScanner::scanEntry(std::size_t& at) {
  constexpr const Surroundings& kAround = surroundings(form);
  Step step = expect(part_, at, kAround.beforeUrl);
  if (step == Step::entry) step = scanText(part_, at, entry_.url);
  if (step == Step::entry) step = expect(part_, at, kAround.beforeTitle);
  if (step == Step::entry) step = scanText(part_, at, entry_.title);
  if (step == Step::entry) step = expect(part_, at, kAround.beforeTime);
  if (step == Step::entry) step = scanTime(at);
  return step == Step::entry ? expect(part_, at, kAround.afterTime) : step;
}

HistoryScanner::Step HistoryScanner::scanTime(std::size_t& at) {
  if (part_.size() - at < kTimeLength) return Step::cutOff;
  const char* text = part_.data() + at;
  if (std::memcmp(text, day_.written.data(), day_.written.size()) != 0) {
    const std::string day(text, day_.written.size());
    const std::string midnight = day + "00:00:00Z";
    const auto time = parseIso8601(midnight);
    // A day may have run over into the next month.
    if (!time || readableHistoryTime(*time) != *time || formatIso8601(*time) != midnight)
      return Step::foreign;
    day_.written = day;
    day_.midnight = time->secondsSince1970;
  }
  const unsigned hour = twoDigits(text + 11);
  const unsigned minute = twoDigits(text + 14);
  const unsigned second = twoDigits(text + 17);
  if (hour > 23 || minute > 59 || second > 59 || text[13] != ':' || text[16] != ':' || text[19] != 'Z') {
    return Step::foreign;
  }
  entry_.timestamp.secondsSince1970 = day_.midnight + 3600 * hour + 60 * minute + second;
  at += kTimeLength;
  return Step::entry;
}

}  // namespace velto
