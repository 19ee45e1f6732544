#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "browsing/history/HistoryEntry.h"
#include "platform/foundation/JsonRecord.h"

namespace velto {

template <>
struct JsonFields<HistoryEntry> {
  static constexpr std::array kFields = {jsonField<&HistoryEntry::url>("url"),
                                         jsonField<&HistoryEntry::title>("title"),
                                         jsonField<&HistoryEntry::timestamp>("timestamp")};
};

/// How the text of a history file is laid out: for reading by people, or without any blanks.
enum class HistoryForm { pretty, compact };

/// The nearest time that a file can hold: of the years 0 to 9999.
WallTime readableHistoryTime(WallTime time);

/// The whole text of a file: an array of objects with "url", "title" and "timestamp" in this order. Times are
/// written at whole seconds, and those outside of the years 0 to 9999 as the nearest that can be read again.
std::string encodeHistory(std::span<const HistoryEntry> entries, HistoryForm form);

/// Any JSON text of such an array: unknown keys are ignored, the first of equal keys counts. Throws
/// `JsonError`, also when only one entry cannot be read.
std::vector<HistoryEntry> decodeHistory(std::string_view text);

/// The beginning of a text whose rest is taken from another one: at least one entry, and what stands before
/// that entry of the other which `entryFollows` tells of, else nothing more.
std::string encodeHistoryBeginning(std::span<const HistoryEntry> entries, bool entryFollows,
                                   HistoryForm form);

/// What each text with entries ends with.
std::string_view historyEnding(HistoryForm form);

/// One entry where it stands in a text.
struct WrittenHistoryEntry {
  /// As between the quotes, escaped.
  std::string_view url;
  std::string_view title;
  WallTime timestamp;
};

/// What was written, without the escapes.
HistoryEntry readEntry(const WrittenHistoryEntry& written);

/// Walks through a text, which may come in parts, that is byte by byte what `encodeHistory` writes. Whether
/// it is UTF-8 is for the caller to check.
class HistoryScanner {
 public:
  enum class Step {
    /// `entry()` is the next one.
    entry,
    /// The array ended, and so did the part. Nothing may follow.
    end,
    /// The part may have ended too early: call `more` with a longer one. A file that ends here is no history.
    cutOff,
    /// No history at all, or one in somebody else's hand.
    foreign,
  };

  explicit HistoryScanner(HistoryForm form) : form_(form) {}

  /// A part of the text, from the `position()` on that was reached in the part before it. It must stay where
  /// it is for as long as its entries are used.
  void more(std::string_view part);
  Step next();
  [[nodiscard]] const WrittenHistoryEntry& entry() const { return entry_; }
  /// Where in the part that entry begins.
  [[nodiscard]] std::size_t entryPosition() const { return entryPosition_; }
  /// Behind that entry, or behind the end of the array.
  [[nodiscard]] std::size_t position() const { return position_; }

 private:
  /// One day after the other is the same in a history.
  struct Day {
    std::string written = "1970-01-01T";
    double midnight = 0;
  };
  template <HistoryForm form>
  Step nextIn();
  template <HistoryForm form>
  Step scanEntry(std::size_t& at);
  Step scanTime(std::size_t& at);

  HistoryForm form_;
  std::string_view part_;
  std::size_t position_ = 0;
  std::size_t entryPosition_ = 0;
  bool anyEntry_ = false;
  WrittenHistoryEntry entry_;
  Day day_;
};

}  // namespace velto
