#pragma once

#include "layouts/LayoutStore.h"
#include "platform/foundation/UserDefaults.h"
#include "platform/loop/MainQueue.h"
#include "platform/ui/Application.h"

namespace velto {

/// Takes a picture of each open page of a stored layout, 480 points on its longer side, and puts them into
/// the layout in one write when all are there. A page whose picture cannot be had keeps the one it has. Pages
/// of private windows are never taken. With the preference "layoutThumbnailsEnabled" off nothing is done.
///
/// `completion` may be empty; it is called from the main queue, or at once when there is nothing to do.
void captureThumbnails(const Layout& layout, const Application& application, LayoutStore& store,
                       const UserDefaults& defaults, MainQueue& mainQueue, Task completion = {});

}  // namespace velto
