#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/windows/HovrelPanel.h"
#include "layouts/LayoutCapture.h"
#include "platform/ui/Application.h"

/// What is on the screens now, as the records of layouts and sessions need it. Main thread only.

namespace velto {

/// Without the number that tells equal displays apart.
std::string displayKey(const Screen& screen);

/// The main display first, then from left to right. Empty while none is connected.
std::vector<LayoutDisplaySnapshot> currentDisplays(const Application& application);
std::vector<LayoutDisplaySnapshot> displaysOf(const std::vector<Screen>& screens);

/// The windows with a page, oldest first, private ones too.
std::vector<HovrelPanel*> openPanels(const Application& application);

/// Nothing for a window that is not captured: a private one, one without a page, and any that is no
/// `HovrelPanel`; nor while no display is connected.
std::optional<WindowSnapshot> snapshot(const Window& window,
                                       const std::vector<LayoutDisplaySnapshot>& displays);

/// Of the open windows that are captured, oldest first. Asks the desktop for its screens once.
std::vector<WindowSnapshot> snapshots(const Application& application,
                                      const std::vector<LayoutDisplaySnapshot>& displays);
/// The same on screens that may be gone by now.
std::vector<WindowSnapshot> snapshotsOn(const std::vector<Screen>& screens, const Application& application,
                                        const std::vector<LayoutDisplaySnapshot>& displays);

}  // namespace velto
