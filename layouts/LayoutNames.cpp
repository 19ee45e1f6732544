#include "layouts/LayoutNames.h"

#include <set>

#include "platform/foundation/Characters.h"
#include "platform/foundation/Text.h"

namespace velto {
namespace {

std::set<std::string> lowercasedNames(const std::vector<std::string>& names) {
  std::set<std::string> all;
  for (const std::string& name : names) all.insert(lowercased(name));
  return all;
}

std::string_view withoutTrailingBlanks(std::string_view text) {
  const std::string_view trimmed = trimWhitespaceAndNewlines(text);
  const auto leading = static_cast<std::size_t>(trimmed.data() - text.data());
  return trimmed.empty() ? trimmed : text.substr(0, leading + trimmed.size());
}

}  // namespace

std::string shortened(const std::string& name, std::size_t longest) {
  const auto all = characters(name);
  if (all.size() <= longest) return name;
  const auto end = static_cast<std::size_t>(all[longest - 1].data() - name.data());
  return std::string(withoutTrailingBlanks(std::string_view(name).substr(0, end))) + "…";
}

std::string uniqueName(const std::string& base, const std::vector<std::string>& existing) {
  const auto taken = lowercasedNames(existing);
  std::string name = base;
  for (int number = 2; taken.contains(lowercased(name)); ++number) name = base + " " + std::to_string(number);
  return name;
}

std::optional<std::string> saveWarning(std::string_view name, std::size_t windowCount,
                                       const std::vector<std::string>& taken) {
  const std::string_view trimmed = trimWhitespaceAndNewlines(name);
  if (trimmed.empty()) return "Give the layout a name.";
  if (windowCount == 0) return "Tick at least one window to save.";
  if (!lowercasedNames(taken).contains(lowercased(trimmed))) return std::nullopt;
  return "The name “" + std::string(trimmed) + "” is already taken.";
}

std::optional<std::string> localFileNotice(const std::vector<WindowSnapshot>& windows) {
  const std::size_t count = localFileSnapshots(windows).size();
  if (count == 0) return std::nullopt;
  return std::to_string(count) + (count == 1 ? " window points" : " windows point") +
         " at a local file and will reopen blank. Serve the folder over http and save that instead.";
}

std::string countedWindows(std::size_t count) {
  return std::to_string(count) + " window" + (count == 1 ? "" : "s");
}

}  // namespace velto
