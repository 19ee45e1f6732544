#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace velto {

/// The text in composed form (NFC): two texts that look the same to Unicode give the same bytes. Ill-formed
/// UTF-8 is repaired.
std::string composed(std::string_view text);

/// The order of texts in the person's language, without regard to case: blanks, punctuation, digits, letters;
/// an accent counts only where the letters are the same. Making one is costly, asking it is not.
class LocalizedOrder {
 public:
  /// `locale` as in "de_DE"; the person's own when it is empty.
  explicit LocalizedOrder(const std::string& locale = {});
  LocalizedOrder(const LocalizedOrder&) = delete;
  LocalizedOrder& operator=(const LocalizedOrder&) = delete;
  ~LocalizedOrder();

  /// Bytes that compare as the texts do. To sort many texts, ask once for each.
  [[nodiscard]] std::string sortKey(std::string_view text) const;

 private:
  struct Collation;
  std::unique_ptr<Collation> collation_;
};

}  // namespace velto
