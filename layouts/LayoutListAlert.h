#pragma once

#include "layouts/LayoutStore.h"
#include "layouts/LayoutsWindow.h"
#include "platform/ui/Application.h"

namespace velto {

/// Lists the names of all layouts with the words that open them in an alert.
class LayoutListAlert : public LayoutsWindow {
 public:
  LayoutListAlert(Application& application, const LayoutStore& store)
      : application_(application), store_(store) {}
  void showLayouts() override;

 private:
  Application& application_;
  const LayoutStore& store_;
};

}  // namespace velto
