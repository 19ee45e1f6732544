#pragma once

#include <optional>
#include <string>
#include <vector>

#include "layouts/Layout.h"

namespace velto {

/// One entry of the submenus that list all layouts.
struct LayoutMenuRow {
  std::string title;
  /// Of the layout; empty for an entry that stands for none.
  std::string id;
  bool enabled = true;
  bool operator==(const LayoutMenuRow&) const = default;
};

constexpr const char* kOpenLayoutMenuTitle = "Open Layout";
constexpr const char* kUpdateLayoutMenuTitle = "Override Another Layout";

/// The same for both submenus, in the order of the layouts. Never empty.
std::vector<LayoutMenuRow> layoutMenuRows(const std::vector<Layout>& layouts);

/// Of the command that saves over the current layout; a long name is shortened.
std::string saveLayoutOverrideTitle(const std::optional<Layout>& current);

}  // namespace velto
