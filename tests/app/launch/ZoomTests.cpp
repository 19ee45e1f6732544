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
      {"1", 1.0},
      {"3", 3.0},
      {"3.0", 3.0},
      {"3.0000001", 0.25},
      {"4", 0.25},
      {"24", 0.25},
      {"25", 0.25},
      {"26", 0.26},
      {"300", 3.0},
      {"301", 3.0},
      {"0.1", 0.25},
      {"0.25", 0.25},
      {"0.26", 0.26},
      // A percent sign always divides.
      {"3%", 0.25},
      {"1.5%", 0.25},
      {"100%", 1.0},
      {"62.5%", 0.625},
      {"301%", 3.0},
      // Blanks around the number and before the sign.
      {" 150 ", 1.5},
      {"\t150 %\u00a0", 1.5},
      {"\u3000"
       "2",
       2.0},
      // Half-written numbers are numbers.
      {".5", 0.5},
      {"2.", 2.0},
      {"007", 0.25},
      // No size of a number is too much.
      {std::string(400, '9'), 3.0},
      {std::string(400, '9') + "%", 3.0},
      {"0" + std::string(400, '0') + "2", 2.0},
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
  for (const char* text : {"",
                           " ",
                           "%",
                           " % ",
                           ".",
                           ".%",
                           "0",
                           "0%",
                           "0.0",
                           "00",
                           "-1",
                           "+1",
                           "1e2",
                           "1,5",
                           "1.5.0",
                           "..1",
                           "150%%",
                           "%150",
                           "15 0",
                           "150\n",
                           "\n150",
                           "abc",
                           "inf",
                           "nan",
                           "0x10",
                           "１５０",
                           "٣",
                           "1½",
                           "150％",
                           "\xff"
                           "1"}) {
    EXPECT_FALSE(parseZoomValue(text)) << text;
  }
  EXPECT_FALSE(parseZoomValue(std::string_view("1\0", 2)));
}

TEST(Zoom, clampKeepsAnyNumberInRange) {
  EXPECT_EQ(clampZoom(0.25), 0.25);
  EXPECT_EQ(clampZoom(0.2), 0.25);
  EXPECT_EQ(clampZoom(-5), 0.25);
  EXPECT_EQ(clampZoom(1.1), 1.1);
  EXPECT_EQ(clampZoom(3.1), 3.0);
  EXPECT_EQ(clampZoom(std::numeric_limits<double>::infinity()), 3.0);
  EXPECT_EQ(clampZoom(std::nan("")), 0.25);
}

}  // namespace
}  // namespace velto
