#pragma once

#include "layouts/LayoutStore.h"
#include "platform/foundation/UserDefaults.h"
#include "platform/loop/MainQueue.h"
#include "platform/ui/Application.h"

namespace velto {

/// Takes a picture of each open page of a stored layout, 480 points on its longer side, and puts them into
/// the layout in one write when all are there, or with those that are there after 5 seconds. A page whose
/// picture cannot be had by then keeps the one it has. Pages of private windows are never taken. Nothing is
/// written once the layout is gone or the preference "layoutThumbnailsEnabled" is off.
///
/// `completion` may be empty; it is called from the main queue, or at once when there is nothing to do.
void captureThumbnails(const Layout& layout, const Application& application, LayoutStore& store,
                       const UserDefaults& defaults, MainQueue& mainQueue, Task completion = {});

}  // namespace velto
