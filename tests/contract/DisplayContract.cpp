// What the X11 backend alone computes. It is here because its library is linked nowhere else in the tests.
#ifdef VELTO_CONTRACT_GTK

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/gtk/Edid.h"
#include "platform/gtk/GtkAlert.h"
#include "platform/gtk/ScreenGeometry.h"

namespace velto {
namespace {

TEST(ScreenGeometryTests, TurnsTheAxisAroundTheMainMonitor) {
  const struct {
    XRect primary;
    XRect x;
    Rect screen;
  } cases[] = {
      {{0, 0, 1920, 1080}, {40, 60, 420, 760}, {{40, 260}, {420, 760}}},
      {{0, 0, 1920, 1080}, {0, 0, 1920, 1080}, {{0, 0}, {1920, 1080}}},
      {{0, 0, 1920, 1080}, {1920, 0, 1280, 800}, {{1920, 280}, {1280, 800}}},
      {{1920, 0, 1280, 800}, {0, 0, 1920, 1080}, {{-1920, -280}, {1920, 1080}}},
      {{1280, 100, 1000, 700}, {1300, 90, 10, 20}, {{20, 690}, {10, 20}}},
  };
  for (const auto& c : cases) {
    const ScreenGeometry geometry(c.primary);
    EXPECT_EQ(geometry.fromX(c.x), c.screen);
    EXPECT_EQ(geometry.toX(c.screen), c.x);
  }
}

TEST(ScreenGeometryTests, RoundsAndHoldsToWhatXCanCarry) {
  const ScreenGeometry geometry({0, 0, 1920, 1080});
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  const struct {
    Rect screen;
    XRect x;
  } cases[] = {
      {{{0.5, 0.5}, {300.4, 200.6}}, {1, 879, 300, 201}},
      {{{0.4, 10.6}, {300.4, 200}}, {0, 869, 300, 200}},
      {{{1e9, 0}, {1e9, 100}}, {30000, 980, 30000, 100}},
      {{{0, 0}, {0, -5}}, {0, 1079, 1, 1}},
      {{{kNaN, kInfinity}, {kInfinity, kNaN}}, {-30000, -30000, 1, 1}},
  };
  for (const auto& c : cases) EXPECT_EQ(geometry.toX(c.screen), c.x);
}

std::vector<std::uint8_t> edidBytes() {
  std::vector<std::uint8_t> bytes(128, 0);
  const std::uint8_t head[] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00,
                               0x10, 0xAC, 0x34, 0xA1, 0x78, 0x56, 0x34, 0x92};
  std::copy(std::begin(head), std::end(head), bytes.begin());
  const std::uint8_t name[] = {0x00, 0x00, 0x00, 0xFC, 0x00, 'U', '2', '7', ' ', 'x', ' ', '\n', ' ', ' '};
  std::copy(std::begin(name), std::end(name), bytes.begin() + 90);
  return bytes;
}

TEST(EdidTests, TellsWhoTheDisplayIs) {
  const auto edid = parseEdid(edidBytes());
  ASSERT_TRUE(edid);
  EXPECT_EQ(edid->vendor, 0x10ACU);
  EXPECT_EQ(edid->product, 0xA134U);
  EXPECT_EQ(edid->serial, 0x92345678U);
  EXPECT_EQ(edid->name, "U27 x");
}

TEST(EdidTests, RefusesWhatIsNone) {
  auto bytes = edidBytes();
  bytes.resize(127);
  EXPECT_FALSE(parseEdid(bytes));
  bytes = edidBytes();
  bytes[0] = 1;
  EXPECT_FALSE(parseEdid(bytes));
  EXPECT_FALSE(parseEdid({}));
  bytes = edidBytes();
  std::fill(bytes.begin() + 54, bytes.end(), std::uint8_t{0xFF});
  EXPECT_EQ(parseEdid(bytes)->name, "");
}

TEST(AlertTextTests, CutsWhatFitsNoDialog) {
  const std::string lines = std::string("a\n") + std::string(1000, '\n');
  const struct {
    std::string text;
    std::string shown;
  } cases[] = {
      {"", ""},
      {"Ein Wort, zwei Wörter", "Ein Wort, zwei Wörter"},
      {std::string(2000, 'x'), std::string(2000, 'x')},
      {std::string(2001, 'x'), std::string(2000, 'x') + "…"},
      {lines, std::string("a\n") + std::string(24, '\n') + "…"},
      {"bad \xFF byte", "bad \xEF\xBF\xBD byte"},
  };
  for (const auto& c : cases) EXPECT_EQ(textForAlert(c.text), c.shown);
  EXPECT_LT(textForAlert(std::string(50'000'000, '\xFF')).size(), 10'000U);
}

}  // namespace
}  // namespace velto

#endif
