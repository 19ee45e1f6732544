#pragma once

#include "layouts/LayoutCommands.h"
#include "layouts/LayoutListAlert.h"
#include "layouts/LayoutManager.h"
#include "layouts/LayoutSaveAlert.h"
#include "layouts/LayoutStore.h"
#include "layouts/SessionRecorder.h"

namespace velto {

/// The layouts and the session of the application, put together. The toasts outlive it.
class StandardLayouts {
 public:
  StandardLayouts(const Platform& platform, Toasts& toasts)
      : store_(platform.files, platform.notifications, platform.environment.applicationSupportDirectory),
        saveSheet_(platform.application),
        manager_(platform, store_, saveSheet_, toasts),
        window_(platform.application, store_),
        commands_(platform, manager_, window_),
        recorder_(platform, manager_, toasts) {}

  [[nodiscard]] Layouts& layouts() { return commands_; }
  [[nodiscard]] Sessions& sessions() { return recorder_; }
  [[nodiscard]] LayoutManager& manager() { return manager_; }
  [[nodiscard]] SessionRecorder& recorder() { return recorder_; }

 private:
  LayoutStore store_;
  LayoutSaveAlert saveSheet_;
  LayoutManager manager_;
  LayoutListAlert window_;
  LayoutCommands commands_;
  SessionRecorder recorder_;
};

}  // namespace velto
