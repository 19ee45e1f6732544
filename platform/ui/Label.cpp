#include "platform/ui/Label.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velto {

Label::Label(std::string text, const Font& font, const Color& color) : font_(font), color_(color) {
  setPassesPointerThrough(true);
  setText(std::move(text));
}

void Label::setText(std::string text) {
  text_ = std::move(text);
  setAccessibilityLabel(text_);
  setNeedsDisplay();
}

void Label::setAlignment(Alignment alignment) {
  alignment_ = alignment;
  setNeedsDisplay();
}

Size Label::fittingSize() const { return TextLayout(text_, font_).size(); }

void Label::draw(const Cairo::RefPtr<Cairo::Context>& context) {
  TextLayout layout(text_, font_);
  const Size room = bounds().size;
  layout.setMaximumWidth(room.width);
  const Size taken = layout.size();
  const double x = alignment_ == Alignment::center ? std::round((room.width - taken.width) / 2) : 0;
  layout.draw(context, {std::max(x, 0.0), std::round((room.height - taken.height) / 2)}, color_);
}

}  // namespace velto
