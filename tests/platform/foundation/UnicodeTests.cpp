#include <string>

#include <gmock/gmock.h>

#include "platform/foundation/Unicode.h"
#include "platform/foundation/Uuid.h"

namespace velto {
namespace {

TEST(Unicode, ComposedTextsThatLookTheSameAreTheSame) {
  EXPECT_EQ(composed("Cafe\u0301"), "Café");
  EXPECT_EQ(composed("Café \xff"), "Café \ufffd");
  EXPECT_NE(composed("ﬁ"), "fi");
}

TEST(Unicode, OrdersWithoutRegardToCase) {
  const LocalizedOrder order("en_US");
  EXPECT_LT(LocalizedOrder("en_US_POSIX").sortKey("a"), LocalizedOrder("en_US_POSIX").sortKey("B"));
  const auto key = [&](std::string_view text) { return order.sortKey(text); };
  const char* ascending[] = {"",   " a", "_x", "-a", "01", "1", "10", "9",
                             "ab", "e",  "é",  "f",  "o",  "ø", "p",  "Z"};
  for (std::size_t at = 1; at < std::size(ascending); ++at) {
    EXPECT_LT(key(ascending[at - 1]), key(ascending[at])) << ascending[at];
  }
  const std::pair<const char*, const char*> same[] = {{"aB", "Ab"}, {"É", "é"},       {"ß", "ss"},
                                                      {"１", "1"},  {"e\u0301", "é"}, {"あ", "ア"}};
  for (const auto& [a, b] : same) EXPECT_EQ(key(a), key(b)) << a;
}

TEST(Uuid, IsRandomAndUpperCase) {
  EXPECT_THAT(makeUuid(),
              testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
  EXPECT_NE(makeUuid(), makeUuid());
}

}  // namespace
}  // namespace velto
