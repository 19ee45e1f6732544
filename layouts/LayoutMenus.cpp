#include "layouts/LayoutMenus.h"

#include <string_view>

#include "layouts/LayoutNames.h"
#include "platform/foundation/Characters.h"
#include "platform/foundation/Text.h"

namespace velto {
namespace {

constexpr std::size_t kLongestName = 28;

std::string_view withoutTrailingBlanks(std::string_view text) {
  const std::string_view trimmed = trimWhitespaceAndNewlines(text);
  const auto leading = static_cast<std::size_t>(trimmed.data() - text.data());
  return trimmed.empty() ? trimmed : text.substr(0, leading + trimmed.size());
}

std::string shortened(const std::string& name) {
  const auto all = characters(name);
  if (all.size() <= kLongestName) return name;
  const auto end = static_cast<std::size_t>(all[kLongestName - 1].data() - name.data());
  return std::string(withoutTrailingBlanks(std::string_view(name).substr(0, end))) + "…";
}

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
  return "Save Layout (Override" + (current ? " “" + shortened(current->name) + "”" : std::string()) + ")";
}

}  // namespace velto
