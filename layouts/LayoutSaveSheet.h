#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "layouts/LayoutCapture.h"
#include "platform/ui/Window.h"

namespace velto {

/// Asks the person what a new layout is called and which windows go into it.
class LayoutSaveSheet {
 public:
  struct Request {
    /// Never empty.
    std::vector<WindowSnapshot> snapshots;
    std::vector<std::string> existingNames;
    /// What stands in the field at first; absent for a name that is free.
    std::optional<std::string> prefillName;
    bool requiresUniqueName = false;
  };
  struct Result {
    /// Trimmed, not empty.
    std::string name;
    /// Not empty.
    std::vector<WindowSnapshot> windows;
  };
  /// Called once, later; with nothing when the person cancelled.
  using Completion = std::function<void(const std::optional<Result>&)>;

  virtual ~LayoutSaveSheet() = default;
  virtual void show(const Request& request, WeakPtr<Window> sheetOn, Completion completion) = 0;
};

}  // namespace velto
