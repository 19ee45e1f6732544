#include <cstdint>
#include <limits>
#include <optional>

#include <gtest/gtest.h>

#include "app/windows/Placement.h"

namespace velto {
namespace {

/// A second display to the right with a panel at its bottom, so that no edge is zero.
constexpr Rect kArea{{1920, 40}, {1280, 1000}};

TEST(Placement, putsAWindowWhereItWasAskedToBe) {
  const auto least = std::numeric_limits<std::int64_t>::min();
  const auto most = std::numeric_limits<std::int64_t>::max();
  const struct {
    const char* what;
    Size window;
    std::optional<std::int64_t> x, y;
    Point origin;
  } cases[] = {
      {"from the left and down from the top", {400, 300}, 40, 60, {1960, 680}},
      {"x alone is at the very top", {400, 300}, 40, {}, {1960, 740}},
      {"y alone is at the left edge", {400, 300}, {}, 60, {1920, 680}},
      {"just fitting", {400, 300}, 880, 700, {2800, 40}},
      {"wider than the area", {2000, 300}, 40, 60, {1920, 680}},
      {"higher than the area", {400, 3000}, 40, 60, {1960, 40}},
      {"the smallest numbers", {400, 300}, least, least, {1920, 740}},
      {"the largest numbers", {400, 300}, most, most, {2800, 40}},
  };
  for (const auto& c : cases) EXPECT_EQ(requestedOrigin(kArea, c.window, c.x, c.y), c.origin) << c.what;
}

TEST(Placement, stepsAwayFromTheWindowThatItCameFrom) {
  const struct {
    const char* what;
    Rect reference;
    Size window;
    Point origin;
  } cases[] = {
      {"the origins step, not the tops", {{2000, 400}, {300, 600}}, {300, 300}, {2024, 376}},
      {"held at the right", {{2850, 400}, {300, 300}}, {400, 300}, {2800, 376}},
      {"held at the bottom", {{2000, 50}, {300, 300}}, {300, 300}, {2024, 40}},
      {"held at the left", {{100, 400}, {300, 300}}, {300, 300}, {1920, 376}},
      {"held at the top", {{2000, 900}, {100, 100}}, {300, 300}, {2024, 740}},
      {"one too large keeps its upper right corner", {{2000, 400}, {300, 300}}, {1400, 1200}, {1800, -160}},
  };
  for (const auto& c : cases) EXPECT_EQ(cascadedOrigin(c.reference, kArea, c.window), c.origin) << c.what;
}

}  // namespace
}  // namespace velto
