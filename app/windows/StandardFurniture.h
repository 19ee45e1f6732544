#pragma once

#include "app/windows/WindowFurniture.h"
#include "platform/ui/Application.h"

namespace velto {

/// The chrome and the zoom badge of every window.
class StandardFurniture : public WindowFurniture {
 public:
  StandardFurniture(const Clock& clock, MainQueue& mainQueue, const WindowSystem& desktop)
      : animator_(clock, mainQueue, desktop), mainQueue_(mainQueue) {}

  void addChrome(HovrelPanel& panel, View& container) override;
  ControlBarView* addControlBar(HovrelPanel&, View&, UserDefaults&) override { return nullptr; }
  void addZoomIndicator(View& container) override;
  void showZoom(View& container, double zoom) override;

 private:
  Animator animator_;
  MainQueue& mainQueue_;
};

}  // namespace velto
