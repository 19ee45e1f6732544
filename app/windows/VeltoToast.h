#pragma once

#include <memory>
#include <string>
#include <thread>

#include "app/windows/Toasts.h"
#include "platform/ui/Application.h"
#include "platform/ui/Label.h"
#include "platform/ui/MomentaryFade.h"

namespace velto {

/// The short message, in a small window near the top of the screen that nobody can click and that takes no
/// keyboard. There is one of it: a later text takes the place of an earlier one. To be made on the main
/// thread, and to outlive every thread that calls it.
class VeltoToast : public Toasts, public Weakable {
 public:
  VeltoToast(Application& application, const Clock& clock, MainQueue& mainQueue);

  using Toasts::show;
  void show(const std::string& text, const Window* window) override;

 private:
  void makePanel();
  [[nodiscard]] Rect visibleFrame(const Window* window) const;

  Application& application_;
  MainQueue& mainQueue_;
  std::thread::id mainThread_ = std::this_thread::get_id();
  /// Made for the first text.
  std::unique_ptr<Panel> panel_;
  WeakPtr<Label> label_;
  MomentaryFade fade_;
};

}  // namespace velto
