#pragma once

#include <memory>
#include <string_view>

#include <cairomm/context.h>

#include "platform/foundation/Geometry.h"
#include "platform/ui/Color.h"

namespace velto {

/// The desktop's font for user interfaces in some size and weight.
struct Font {
  enum class Weight { regular, medium, semibold, bold };
  /// Height in points.
  double size = 13;
  Weight weight = Weight::regular;
  /// All digits are equally wide, so that a changing number does not dance.
  bool monospacedDigits = false;
  bool operator==(const Font&) const = default;
};

/// One line of text, laid out once. Line breaks in it become blanks, what is not UTF-8 is replaced, and the
/// end of what is longer than any window is dropped. Needs no display.
class TextLayout {
 public:
  TextLayout(std::string_view text, const Font& font);
  ~TextLayout();
  TextLayout(TextLayout&&) noexcept;
  TextLayout& operator=(TextLayout&&) noexcept;

  /// What the text takes when nothing holds it, in points rounded up.
  [[nodiscard]] Size size() const;
  /// Cuts the text at its end with an ellipsis where it would be wider.
  void setMaximumWidth(double width);
  /// `lowerLeft` is the corner of the text's own box; the context has y upwards.
  void draw(const Cairo::RefPtr<Cairo::Context>& context, Point lowerLeft, const Color& color) const;

 private:
  struct Native;
  std::unique_ptr<Native> native_;
};

}  // namespace velto
