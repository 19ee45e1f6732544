#pragma once

#include <string>

#include "platform/ui/TextLayout.h"
#include "platform/ui/View.h"

namespace velto {

/// A line of text that cannot be edited. It takes no pointer events, stands in the middle of its height, and
/// is cut with an ellipsis where it does not fit. Assistive technology reads its text.
class Label : public View {
 public:
  enum class Alignment { left, center };

  explicit Label(std::string text = "", const Font& font = {}, const Color& color = {});

  [[nodiscard]] const std::string& text() const { return text_; }
  void setText(std::string text);
  void setAlignment(Alignment alignment);
  /// What the whole text takes.
  [[nodiscard]] Size fittingSize() const;

  void draw(const Cairo::RefPtr<Cairo::Context>& context) override;

 private:
  std::string text_;
  Font font_;
  Color color_;
  Alignment alignment_ = Alignment::left;
};

}  // namespace velto
