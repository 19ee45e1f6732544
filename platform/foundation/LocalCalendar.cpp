#include "platform/foundation/LocalCalendar.h"

#include <stdexcept>
#include <string_view>

#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

namespace velto {
namespace {

constexpr double kMilliseconds = 1000;

UDate milliseconds(WallTime time) { return time.secondsSince1970 * kMilliseconds; }

icu::UnicodeString unicode(const std::string& text) { return icu::UnicodeString::fromUTF8(text); }

icu::Locale localeFor(const std::string& name) {
  const icu::Locale locale = name.empty() ? icu::Locale::getDefault() : icu::Locale(name.c_str());
  // A person who set no language reads English like the rest of the program.
  return std::string_view(locale.getVariant()) == "POSIX" ? icu::Locale::getUS() : locale;
}

}  // namespace

struct LocalCalendar::Tools {
  icu::Locale locale;
  std::unique_ptr<icu::Calendar> calendar;

  /// A copy that stands at the moment; null when it cannot.
  [[nodiscard]] std::unique_ptr<icu::Calendar> at(WallTime time) const {
    UErrorCode error = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> copy(calendar->clone());
    copy->setTime(milliseconds(time), error);
    return U_SUCCESS(error) ? std::move(copy) : nullptr;
  }
};

LocalCalendar::LocalCalendar(const std::string& locale, const std::string& timeZone)
    : tools_(std::make_unique<Tools>()) {
  UErrorCode error = U_ZERO_ERROR;
  tools_->locale = localeFor(locale);
  icu::TimeZone* zone =
      timeZone.empty() ? icu::TimeZone::createDefault() : icu::TimeZone::createTimeZone(unicode(timeZone));
  tools_->calendar.reset(icu::Calendar::createInstance(zone, tools_->locale, error));
  if (U_FAILURE(error) || !tools_->calendar) throw std::runtime_error(u_errorName(error));
}

LocalCalendar::~LocalCalendar() = default;

bool LocalCalendar::isSameDay(WallTime a, WallTime b) const {
  const auto first = tools_->at(a);
  const auto second = tools_->at(b);
  if (!first || !second) return false;
  for (const UCalendarDateFields field : {UCAL_ERA, UCAL_YEAR, UCAL_DAY_OF_YEAR}) {
    UErrorCode error = U_ZERO_ERROR;
    if (first->get(field, error) != second->get(field, error) || U_FAILURE(error)) return false;
  }
  return true;
}

WallTime LocalCalendar::addingDays(WallTime time, int days) const {
  const auto calendar = tools_->at(time);
  if (!calendar) return time;
  UErrorCode error = U_ZERO_ERROR;
  calendar->add(UCAL_DATE, days, error);
  const UDate later = calendar->getTime(error);
  return U_SUCCESS(error) ? WallTime{later / kMilliseconds} : time;
}

std::optional<int> LocalCalendar::wholeDays(WallTime from, WallTime to) const {
  const auto calendar = tools_->at(from);
  if (!calendar) return std::nullopt;
  UErrorCode error = U_ZERO_ERROR;
  const int days = calendar->fieldDifference(milliseconds(to), UCAL_DATE, error);
  return U_SUCCESS(error) ? std::optional(days) : std::nullopt;
}

std::string LocalCalendar::text(WallTime time, const std::string& pattern) const {
  UErrorCode error = U_ZERO_ERROR;
  icu::SimpleDateFormat format(unicode(pattern), tools_->locale, error);
  if (U_FAILURE(error)) return {};
  format.setCalendar(*tools_->calendar);
  icu::UnicodeString text;
  std::string result;
  return format.format(milliseconds(time), text).toUTF8String(result);
}

}  // namespace velto
