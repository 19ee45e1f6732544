#include "platform/foundation/LocalizedFormat.h"

#include <string_view>

#include <unicode/datefmt.h>
#include <unicode/numfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

namespace velto {
namespace {

icu::Locale localeFor(const std::string& name) {
  const icu::Locale locale = name.empty() ? icu::Locale::getDefault() : icu::Locale(name.c_str());
  // A program's own language has no separators; a person who set none reads English like the rest of the
  // program.
  return std::string_view(locale.getVariant()) == "POSIX" ? icu::Locale::getUS() : locale;
}

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  return text.toUTF8String(result);
}

}  // namespace

struct LocalizedFormat::Formatters {
  std::unique_ptr<icu::NumberFormat> number;
  std::unique_ptr<icu::DateFormat> shortTime;
};

LocalizedFormat::LocalizedFormat(const std::string& locale, const std::string& timeZone)
    : formatters_(std::make_unique<Formatters>()) {
  const icu::Locale language = localeFor(locale);
  UErrorCode error = U_ZERO_ERROR;
  formatters_->number.reset(icu::NumberFormat::createInstance(language, error));
  if (U_FAILURE(error)) formatters_->number.reset();
  formatters_->shortTime.reset(icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, language));
  if (formatters_->shortTime && !timeZone.empty()) {
    formatters_->shortTime->adoptTimeZone(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZone)));
  }
}

LocalizedFormat::~LocalizedFormat() = default;

std::string LocalizedFormat::number(std::int64_t number) const {
  if (!formatters_->number) return std::to_string(number);
  icu::UnicodeString text;
  return utf8(formatters_->number->format(number, text));
}

std::string LocalizedFormat::shortTime(WallTime time) const {
  constexpr double kMilliseconds = 1000;
  if (!formatters_->shortTime) return formatIso8601(time);
  icu::UnicodeString text;
  return utf8(formatters_->shortTime->format(time.secondsSince1970 * kMilliseconds, text));
}

}  // namespace velto
