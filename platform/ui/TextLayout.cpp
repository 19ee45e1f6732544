#include "platform/ui/TextLayout.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

#include <pango/pangocairo.h>

namespace velto {

namespace {

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
struct FreeFont {
  void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
};
struct FreeAttributes {
  void operator()(PangoAttrList* attributes) const { pango_attr_list_unref(attributes); }
};

/// At this resolution a point of a font is a point of a view.
constexpr double kDotsPerInch = 72;

PangoWeight pangoWeight(Font::Weight weight) {
  switch (weight) {
    case Font::Weight::regular:
      return PANGO_WEIGHT_NORMAL;
    case Font::Weight::medium:
      return PANGO_WEIGHT_MEDIUM;
    case Font::Weight::semibold:
      return PANGO_WEIGHT_SEMIBOLD;
    case Font::Weight::bold:
      return PANGO_WEIGHT_BOLD;
  }
  return PANGO_WEIGHT_NORMAL;
}

std::unique_ptr<PangoFontDescription, FreeFont> describe(const Font& font) {
  std::unique_ptr<PangoFontDescription, FreeFont> description(pango_font_description_new());
  pango_font_description_set_family_static(description.get(), "system-ui, sans-serif");
  pango_font_description_set_weight(description.get(), pangoWeight(font.weight));
  pango_font_description_set_absolute_size(description.get(), font.size * PANGO_SCALE);
  return description;
}

/// More than fits into the longest side of a window; laying out an endless text takes as long as the text.
std::string_view cut(std::string_view text) {
  constexpr std::size_t kMostBytes = 4096;
  if (text.size() <= kMostBytes) return text;
  const auto isInsideCharacter = [&](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  std::size_t end = kMostBytes;
  while (end > kMostBytes - 4 && isInsideCharacter(end)) --end;
  return text.substr(0, end);
}

std::string oneLine(std::string_view whole) {
  const std::string_view text = cut(whole);
  const std::unique_ptr<char, void (*)(gpointer)> valid(
      g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), g_free);
  std::string line(valid.get());
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
  return line;
}

}  // namespace

struct TextLayout::Native {
  std::unique_ptr<PangoContext, Unref> context;
  std::unique_ptr<PangoLayout, Unref> layout;
};

TextLayout::TextLayout(std::string_view text, const Font& font) : native_(std::make_unique<Native>()) {
  PangoFontMap* const fonts = pango_cairo_font_map_get_default();
  native_->context.reset(pango_font_map_create_context(fonts));
  pango_cairo_context_set_resolution(native_->context.get(), kDotsPerInch);
  native_->layout.reset(pango_layout_new(native_->context.get()));
  PangoLayout* const layout = native_->layout.get();
  pango_layout_set_single_paragraph_mode(layout, TRUE);
  pango_layout_set_font_description(layout, describe(font).get());
  if (font.monospacedDigits) {
    const std::unique_ptr<PangoAttrList, FreeAttributes> attributes(pango_attr_list_new());
    pango_attr_list_insert(attributes.get(), pango_attr_font_features_new("tnum=1"));
    pango_layout_set_attributes(layout, attributes.get());
  }
  const std::string line = oneLine(text);
  pango_layout_set_text(layout, line.data(), static_cast<int>(line.size()));
}

TextLayout::~TextLayout() = default;
TextLayout::TextLayout(TextLayout&&) noexcept = default;
TextLayout& TextLayout::operator=(TextLayout&&) noexcept = default;

Size TextLayout::size() const {
  int width = 0;
  int height = 0;
  pango_layout_get_size(native_->layout.get(), &width, &height);
  return {std::ceil(static_cast<double>(width) / PANGO_SCALE),
          std::ceil(static_cast<double>(height) / PANGO_SCALE)};
}

void TextLayout::setMaximumWidth(double width) {
  // Drawn at another scale a text is not quite as wide as it was measured; it would be cut for that.
  if (width >= size().width) return;
  pango_layout_set_ellipsize(native_->layout.get(), PANGO_ELLIPSIZE_END);
  constexpr double kMost = 1e6;
  const double held = width > 0 ? std::min(width, kMost) : 0;
  pango_layout_set_width(native_->layout.get(), static_cast<int>(std::lround(held * PANGO_SCALE)));
}

void TextLayout::draw(const Cairo::RefPtr<Cairo::Context>& context, Point lowerLeft,
                      const Color& color) const {
  context->save();
  // Pango draws downwards from the upper left corner.
  context->translate(lowerLeft.x, lowerLeft.y + size().height);
  context->scale(1, -1);
  context->set_source_rgba(color.red, color.green, color.blue, color.alpha);
  pango_cairo_update_layout(context->cobj(), native_->layout.get());
  pango_cairo_show_layout(context->cobj(), native_->layout.get());
  context->restore();
}

}  // namespace velto
