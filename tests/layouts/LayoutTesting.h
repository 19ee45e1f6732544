#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "layouts/Layout.h"

namespace velto::test {

/// The bytes of tests/layouts/golden/<name>.
inline std::string golden(const std::string& name) {
  std::ifstream file(std::string(VELTO_SOURCE_DIR) + "/tests/layouts/golden/" + name, std::ios::binary);
  if (!file) throw std::runtime_error("no golden file " + name);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

/// The text with the only occurrence of `old` replaced.
inline std::string replacing(std::string text, const std::string& old, const std::string& by) {
  const std::size_t at = text.find(old);
  if (at == std::string::npos || text.find(old, at + 1) != std::string::npos)
    throw std::invalid_argument(old);
  return text.replace(at, old.size(), by);
}

/// With a window for each of the thumbnails "thumbs/<name>.png".
inline Layout makeLayout(const std::string& id, const std::string& name = {}, double updatedAt = 0,
                         const std::vector<std::string>& thumbnails = {}) {
  Layout layout;
  layout.id = id;
  layout.name = name;
  layout.createdAt.secondsSince1970 = updatedAt;
  layout.updatedAt.secondsSince1970 = updatedAt;
  for (const std::string& thumbnail : thumbnails) {
    LayoutWindow window;
    window.id = thumbnail;
    window.thumbnail = "thumbs/" + thumbnail + ".png";
    layout.windows.push_back(window);
  }
  return layout;
}

/// What golden/layout.json holds.
inline Layout goldenLayout() {
  LayoutWindow window;
  window.id = "9B2F6C1E-0D37-4C84-A1F5-3E9D5B7A6C20";
  window.url = "https://ci.example.com/a/b?x=1&y=<2>";
  window.title = "Builds — “main” \"green\" \\ 😀";
  window.displayKey = "1552:41231:0:1512x982";
  window.rect = {0, 0, 420, 760};
  window.normalized = {0, 0, 420 / 1512.0, 760 / 944.5};
  window.anchors.left = true;
  window.anchors.top = true;
  window.pinned = true;
  window.thumbnail = "thumbs/4E6D1B2C-8F10-4A55-9C3E-6A1B7D20F311-9B2F6C1E-0D37-4C84-A1F5-3E9D5B7A6C20.png";
  window.scroll = LayoutScroll{0, 1250.5};
  window.noFocus = true;
  window.capturedAt.secondsSince1970 = 1772474691;
  Layout layout = makeLayout("4E6D1B2C-8F10-4A55-9C3E-6A1B7D20F311", "Morning dashboards", 1772474691);
  layout.createdAt.secondsSince1970 = 1772357412;
  layout.displays = {{"1552:41231:0:1512x982", "Display A", {1512, 982}, {0, 0, 1512, 944.5}, 2, true}};
  layout.windows = {window};
  return layout;
}

}  // namespace velto::test
