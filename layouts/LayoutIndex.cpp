#include "layouts/LayoutIndex.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "layouts/LayoutSlug.h"
#include "platform/foundation/Unicode.h"

namespace velto {
namespace {

std::string onOneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
  return text;
}

/// Their positions in that order.
std::vector<std::size_t> sortedByName(const std::vector<Layout>& layouts) {
  const LocalizedOrder order;
  std::vector<std::pair<std::string, std::size_t>> keys;
  keys.reserve(layouts.size());
  for (const Layout& layout : layouts) keys.emplace_back(order.sortKey(layout.name), keys.size());
  std::sort(keys.begin(), keys.end());  // equal names stay in the order in which they came
  std::vector<std::size_t> sorted;
  sorted.reserve(layouts.size());
  for (const auto& entry : keys) sorted.push_back(entry.second);
  return sorted;
}

std::string displayNames(const Layout& layout) {
  std::string names;
  for (const LayoutDisplay& display : layout.displays) {
    if (&display != &layout.displays.front()) names += ", ";
    names += display.name;
  }
  return names;
}

}  // namespace

std::string layoutIndex(const std::vector<Layout>& layouts) {
  // Of the list as it came, since the age and the id alone do not always tell who goes first.
  const std::vector<std::string> slugs = slugsOf(layouts);
  std::string text;
  for (const std::size_t position : sortedByName(layouts)) {
    const Layout& layout = layouts[position];
    text += layout.id + '\t' + onOneLine(layout.name) + '\t' + slugs[position] + '\t' +
            std::to_string(layout.windows.size()) + '\t';
    text += std::to_string(std::llround(layout.updatedAt.secondsSince1970)) + '\t';
    text += onOneLine(displayNames(layout)) + '\n';
  }
  return text;
}

}  // namespace velto
