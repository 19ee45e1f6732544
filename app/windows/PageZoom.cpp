#include "app/windows/PageZoom.h"

#include <algorithm>

#include "app/launch/Zoom.h"

namespace velto {

namespace {
constexpr double kZoomStep = 0.1;
}

template <class Next>
void PageZoom::change(Next next) {
  HovrelPanel* panel = windows_.keyPanel();
  if (panel == nullptr || panel->contentView() == nullptr) return;
  auto* webView = firstSubview<WebView>(*panel->contentView());
  if (webView == nullptr) return;
  const double zoom = next(webView->pageZoom());
  webView->setPageZoom(zoom);
  if (panel->controlBarView) panel->controlBarView->setPageZoom(zoom);
  furniture_.showZoom(*panel->contentView(), zoom);
}

void PageZoom::zoomIn() {
  change([](double zoom) { return std::min(zoom + kZoomStep, kMaximumZoom); });
}

void PageZoom::zoomOut() {
  change([](double zoom) { return std::max(zoom - kZoomStep, kMinimumZoom); });
}

void PageZoom::resetZoom() {
  change([](double) { return 1.0; });
}

}  // namespace velto
