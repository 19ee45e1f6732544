#pragma once

#include <algorithm>
#include <vector>

namespace velto {

/// The display with this key, else the main one, else the first; null when there are none. A display has a
/// `key` and tells whether it `isMain`.
template <class Display, class Key>
const Display* byKeyElseMain(const std::vector<Display>& displays, const Key& key) {
  if (displays.empty()) return nullptr;
  auto found = std::find_if(displays.begin(), displays.end(), [&](const Display& d) { return d.key == key; });
  if (found == displays.end()) {
    found = std::find_if(displays.begin(), displays.end(), [](const Display& d) { return d.isMain; });
  }
  return found == displays.end() ? &displays.front() : &*found;
}

}  // namespace velto
