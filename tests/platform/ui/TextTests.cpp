#include <array>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ui/Label.h"
#include "platform/ui/TextLayout.h"

namespace velto {
namespace {

double widthOf(const std::string& text, const Font& font = {}) { return TextLayout(text, font).size().width; }

TEST(TextLayout, MeasuresWhatAPersonSees) {
  EXPECT_GT(TextLayout("", {}).size().height, 0) << "a line without letters has a height";
  EXPECT_EQ(widthOf(""), 0);
  EXPECT_GT(widthOf("Window pinned"), widthOf("Window"));
  EXPECT_GT(widthOf("Window", {.size = 26}), 1.8 * widthOf("Window", {.size = 13}));
  EXPECT_GT(widthOf("Window", {.weight = Font::Weight::bold}), widthOf("Window"));
  const Font digits{.monospacedDigits = true};
  EXPECT_EQ(widthOf("111%", digits), widthOf("888%", digits));
  EXPECT_EQ(widthOf("two\nlines"), widthOf("two lines"));
}

TEST(TextLayout, HoldsAnyTextAndAnyWidth) {
  const std::vector<std::string> texts{"",
                                       "plain",
                                       "\xff\xfe broken \xc3",
                                       std::string("nul\0nul", 7),
                                       "\xe2\x80\xa8",
                                       "ä€🎬",
                                       std::string(50'000'000, 'x'),
                                       std::string(4095, 'x') + "€€"};
  for (const std::string& text : texts) {
    for (const double width : {60.0, 0.0, 1.0, -5.0, 1e18, std::numeric_limits<double>::quiet_NaN()}) {
      TextLayout layout(text, {});
      layout.setMaximumWidth(width);
      const Size size = layout.size();
      EXPECT_GT(size.height, 0);
      // An ellipsis alone may be wider than very little room.
      EXPECT_LE(size.width, width == 60 ? width : 40'000) << text.substr(0, 20);
    }
  }
}

/// How many pixels of a column have ink in them.
std::array<int, 4> inkByQuarter(Label& label, int width, int height) {
  label.setFrame({{0, 0}, {static_cast<double>(width), static_cast<double>(height)}});
  const auto surface = Cairo::ImageSurface::create(Cairo::FORMAT_ARGB32, width, height);
  label.render(Cairo::Context::create(surface));
  surface->flush();
  std::array<int, 4> ink{};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const unsigned char alpha = surface->get_data()[y * surface->get_stride() + 4 * x + 3];
      if (alpha > 0) ++ink.at(static_cast<std::size_t>(4 * x / width));
    }
  }
  return ink;
}

TEST(Label, DrawsItsTextWhereItIsAligned) {
  Label label("ii");
  const auto left = inkByQuarter(label, 200, 20);
  EXPECT_GT(left[0], 0);
  EXPECT_EQ(left[1] + left[2] + left[3], 0);
  label.setAlignment(Label::Alignment::center);
  const auto centred = inkByQuarter(label, 200, 20);
  EXPECT_EQ(centred[0] + centred[3], 0);
  EXPECT_GT(centred[1] + centred[2], 0);
  label.setText(std::string(1000, 'm'));
  const auto full = inkByQuarter(label, 200, 20);
  for (const int ink : full) EXPECT_GT(ink, 0);
  EXPECT_EQ(label.accessibilityLabel(), label.text());
  EXPECT_GT(label.fittingSize().width, 200);
}

}  // namespace
}  // namespace velto
