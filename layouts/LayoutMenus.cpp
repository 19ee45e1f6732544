#include "layouts/LayoutMenus.h"

#include "layouts/LayoutNames.h"

namespace velto {
namespace {

constexpr std::size_t kLongestName = 28;

}  // namespace

std::vector<LayoutMenuRow> layoutMenuRows(const std::vector<Layout>& layouts) {
  if (layouts.empty()) return {{.title = "No Layouts", .id = {}, .enabled = false}};
  std::vector<LayoutMenuRow> rows;
  for (const Layout& layout : layouts) {
    rows.push_back(
        {.title = layout.name + " (" + countedWindows(layout.windows.size()) + ")", .id = layout.id});
  }
  return rows;
}

std::string saveLayoutOverrideTitle(const std::optional<Layout>& current) {
  return "Save Layout (Override" +
         (current ? " “" + shortened(current->name, kLongestName) + "”" : std::string()) + ")";
}

}  // namespace velto
