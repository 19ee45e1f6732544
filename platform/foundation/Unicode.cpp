#include "platform/foundation/Unicode.h"

#include <unicode/bytestream.h>
#include <unicode/coll.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include "platform/foundation/Text.h"

namespace velto {
namespace {

icu::StringPiece piece(const std::string& text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

}  // namespace

std::string composed(std::string_view text) {
  const std::string whole = repairUtf8(text);
  UErrorCode error = U_ZERO_ERROR;
  const icu::Normalizer2* normalizer = icu::Normalizer2::getNFCInstance(error);
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  if (U_SUCCESS(error)) normalizer->normalizeUTF8(0, piece(whole), sink, nullptr, error);
  return U_SUCCESS(error) ? result : whole;
}

struct LocalizedOrder::Collation {
  std::unique_ptr<icu::Collator> collator;
};

LocalizedOrder::LocalizedOrder(const std::string& locale) : collation_(std::make_unique<Collation>()) {
  UErrorCode error = U_ZERO_ERROR;
  icu::Locale language = locale.empty() ? icu::Locale::getDefault() : icu::Locale(locale.c_str());
  // Without a language set, the order would be that of the codes: all capitals first.
  if (std::string_view(language.getVariant()) == "POSIX") language = icu::Locale::getRoot();
  collation_->collator.reset(icu::Collator::createInstance(language, error));
  if (U_FAILURE(error)) collation_->collator.reset();
  if (collation_->collator) collation_->collator->setStrength(icu::Collator::SECONDARY);
}

LocalizedOrder::~LocalizedOrder() = default;

std::string LocalizedOrder::sortKey(std::string_view text) const {
  if (!collation_->collator) return lowercased(text);  // the language data cannot be loaded
  auto unicode = icu::UnicodeString::fromUTF8(piece(repairUtf8(text)));
  unicode.foldCase();
  std::string key;
  const std::int32_t length = collation_->collator->getSortKey(unicode, nullptr, 0);
  key.resize(static_cast<std::size_t>(length));
  collation_->collator->getSortKey(unicode, reinterpret_cast<std::uint8_t*>(key.data()), length);
  return key;
}

}  // namespace velto
