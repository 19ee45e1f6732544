#pragma once

#include "platform/ui/View.h"
#include "platform/ui/Window.h"

namespace velto {

enum class TrafficLightType { close, minimize, zoom };

/// One of the three dots that close, minimise and zoom their window: a faint small disc, or a bright larger
/// one with its symbol.
class TrafficLightDot : public View {
 public:
  static constexpr double kCompactSize = 6;
  static constexpr double kExpandedSize = 12;

  TrafficLightDot(TrafficLightType type, WeakPtr<Window> targetWindow);

  /// The frame in the row of dots at this expansion, from 0, compact, to 1, expanded.
  [[nodiscard]] static Rect frameAt(TrafficLightType type, double expansion);
  void setExpansion(double expansion);

  void draw(const Cairo::RefPtr<Cairo::Context>& context) override;
  /// Acts at once, and may end the window and this view with it.
  bool mouseDown(const MouseEvent& event) override;

 private:
  void drawSymbol(const Cairo::RefPtr<Cairo::Context>& context) const;

  TrafficLightType type_;
  WeakPtr<Window> targetWindow_;
  double expansion_ = 0;
};

}  // namespace velto
