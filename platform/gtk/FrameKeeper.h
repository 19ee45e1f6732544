#pragma once

#include <gtk/gtk.h>

#include "platform/gtk/GtkScreens.h"
#include "platform/gtk/ScreenGeometry.h"
#include "platform/loop/MainQueue.h"
#include "platform/ui/Window.h"

namespace velto {

/// Puts a toplevel where its window says, and tells the window where the toplevel really is.
///
/// The window manager answers late, may answer each of many quick requests, and may decide otherwise. So what
/// it reports while requests are on their way is not looked at; when they have come to rest, the real place
/// is asked for. A window that was just put on the screen is corrected once; after that the real place is the
/// truth. However often the frame changes, one request is sent for each picture of the screen: the first at
/// once, the last for certain.
class FrameKeeper {
 public:
  FrameKeeper(GtkWindow* toplevel, Window& window, const GtkScreens& screens, MainQueue& queue);
  FrameKeeper(const FrameKeeper&) = delete;
  FrameKeeper& operator=(const FrameKeeper&) = delete;
  ~FrameKeeper() {
    settling_.cancel();
    pacing_.cancel();
  }

  /// The window's frame changed.
  void request();
  /// Before a hidden toplevel is shown.
  void willShow();
  /// The toplevel is on the screen.
  void didShow();
  /// The toplevel was moved or sized, by whomever.
  void configured();
  /// The origin of the coordinates may be another one now.
  void screensChanged() { takeReal(); }

 private:
  [[nodiscard]] bool isMapped() const;
  [[nodiscard]] bool isShown() const;
  [[nodiscard]] XRect wanted() const { return screens_.geometry().toX(window_.frame()); }
  [[nodiscard]] XRect real() const;
  void move();
  void movePaced();
  void settleLater();
  void settle();
  bool correctOnce();
  void takeReal();

  GtkWindow* toplevel_;
  Window& window_;
  const GtkScreens& screens_;
  MainQueue& queue_;
  WorkItem settling_;
  /// Pending while the next request must wait.
  WorkItem pacing_;
  /// The frame changed after the last request.
  bool isBehind_ = false;
  bool mayCorrect_ = false;
};

}  // namespace velto
