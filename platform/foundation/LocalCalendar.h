#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/Date.h"

namespace velto {

/// Days and dates as they are where the person is, in the person's language. Making one is costly, asking it
/// is not. One thread at a time.
class LocalCalendar {
 public:
  /// `locale` as in "de_DE", `timeZone` as in "Europe/Berlin"; the person's own when they are empty.
  explicit LocalCalendar(const std::string& locale = {}, const std::string& timeZone = {});
  LocalCalendar(const LocalCalendar&) = delete;
  LocalCalendar& operator=(const LocalCalendar&) = delete;
  ~LocalCalendar();

  [[nodiscard]] bool isSameDay(WallTime a, WallTime b) const;
  /// The same time of the day so many days later.
  [[nodiscard]] WallTime addingDays(WallTime time, int days) const;
  /// How many days can be added to the one moment until the other would be passed; negative towards the past.
  /// Absent for times beyond the calendar.
  [[nodiscard]] std::optional<int> wholeDays(WallTime from, WallTime to) const;
  /// By a Unicode date pattern: "h:mm a", "EEEE", "MMM d".
  [[nodiscard]] std::string text(WallTime time, const std::string& pattern) const;

 private:
  struct Tools;
  std::unique_ptr<Tools> tools_;
};

}  // namespace velto
