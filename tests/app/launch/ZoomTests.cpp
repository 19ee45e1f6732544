#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "app/launch/Zoom.h"

namespace velto {
namespace {

TEST(Zoom, readsMultipliersAndPercentages) {
  const struct {
    std::string text;
    double zoom;
  } cases[] = {
      // One and a half, in its three spellings.
      {"150", 1.5},
      {"1.5", 1.5},
      {"150%", 1.5},
      // Up to 3 a bare number is a multiplier, above it a percentage.
      {"3.0", 3.0},
      {"3.0000001", 0.25},
      {"26", 0.26},
      {"301", 3.0},
      {"0.1", 0.25},
      // A percent sign always divides.
      {"3%", 0.25},
      {"62.5%", 0.625},
      // Blanks around the number and before the sign.
      {"\t150 %\u00a0", 1.5},
      // Half-written numbers are numbers.
      {".5", 0.5},
      {"2.", 2.0},
      // No size of a number is too much.
      {std::string(400, '9'), 3.0},
      {std::string(400, '9') + "%", 3.0},
      {"0." + std::string(300, '0') + "1", 0.25},
  };
  for (const auto& c : cases) {
    const auto zoom = parseZoomValue(c.text);
    ASSERT_TRUE(zoom) << c.text;
    EXPECT_DOUBLE_EQ(*zoom, c.zoom) << c.text;
  }
}

TEST(Zoom, refusesEverythingElse) {
  EXPECT_FALSE(parseZoomValue(std::nullopt));
  for (const char* text :
       {"",      " ",    "%",    ".",     ".%",  "0",   "0.0%", "-1",     "+1", "1e2",   "1,5", "1.5.0",
        "150%%", "%150", "15 0", "150\n", "inf", "nan", "0x10", "１５０", "1½", "150％", "\xff"}) {
    EXPECT_FALSE(parseZoomValue(text)) << text;
  }
  EXPECT_FALSE(parseZoomValue(std::string_view("1\0", 2)));
}

TEST(Zoom, clampKeepsAnyNumberInRange) {
  EXPECT_EQ(clampZoom(-5), 0.25);
  EXPECT_EQ(clampZoom(1.1), 1.1);
  EXPECT_EQ(clampZoom(std::numeric_limits<double>::infinity()), 3.0);
  EXPECT_EQ(clampZoom(std::nan("")), 0.25);
}

}  // namespace
}  // namespace velto
