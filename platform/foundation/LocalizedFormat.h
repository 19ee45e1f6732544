#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/foundation/Date.h"

namespace velto {

/// Numbers and times as the person reads them. Making one is costly, using it is not. One thread at a time.
class LocalizedFormat {
 public:
  /// `locale` as in "de_DE", `timeZone` as in "Europe/Berlin"; the person's own when they are empty.
  explicit LocalizedFormat(const std::string& locale = {}, const std::string& timeZone = {});
  LocalizedFormat(const LocalizedFormat&) = delete;
  LocalizedFormat& operator=(const LocalizedFormat&) = delete;
  ~LocalizedFormat();

  /// With the separators of thousands: "1,234,567".
  [[nodiscard]] std::string number(std::int64_t number) const;
  /// Hours and minutes, without a date: "10:04 PM", with whatever blank the language puts there.
  [[nodiscard]] std::string shortTime(WallTime time) const;

 private:
  struct Formatters;
  std::unique_ptr<Formatters> formatters_;
};

}  // namespace velto
