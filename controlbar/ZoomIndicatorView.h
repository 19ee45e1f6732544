#pragma once

#include "platform/ui/Label.h"
#include "platform/ui/MomentaryFade.h"

namespace velto {

/// The badge at the lower right of a window that tells the page's zoom for a moment after it changed. While
/// it cannot be seen the pointer goes through it.
class ZoomIndicatorView : public View {
 public:
  ZoomIndicatorView(const Rect& frame, const Animator& animator, MainQueue& mainQueue);

  /// 1 is the page's own size. The badge takes the size that the text needs, at the superview's lower right.
  void show(double zoom);

  void draw(const Cairo::RefPtr<Cairo::Context>& context) override;

 private:
  void setVisibility(double alpha);

  Label& label_;
  MomentaryFade fade_;
};

}  // namespace velto
