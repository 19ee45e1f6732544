#include "layouts/LayoutListAlert.h"

#include <string>

#include "layouts/LayoutAlert.h"
#include "layouts/LayoutNames.h"
#include "layouts/LayoutSlug.h"

namespace velto {
namespace {

/// As many as an alert shows without cutting them off.
constexpr std::size_t kMostLines = 15;
constexpr const char* kNone =
    "There are no layouts yet. Arrange some windows, then run `velto layouts save NAME`.";

std::string linesFor(const std::vector<Layout>& layouts) {
  if (layouts.empty()) return kNone;
  const auto slugs = slugTable(layouts);
  std::string lines;
  for (std::size_t i = 0; i < layouts.size() && i < kMostLines; ++i) {
    lines += layouts[i].name + " (" + countedWindows(layouts[i].windows.size()) + "): velto " +
             slugs.at(layouts[i].id) + "\n";
  }
  if (layouts.size() > kMostLines) {
    lines += "and " + std::to_string(layouts.size() - kMostLines) +
             " more. Run `velto layouts list` to see all of them.\n";
  }
  lines.pop_back();
  return lines;
}

std::string linesFor(const std::vector<UnreadableLayoutFile>& files) {
  std::string lines;
  if (files.size() > kMostLines) return "\n\n" + std::to_string(files.size()) + " files could not be read.";
  for (const UnreadableLayoutFile& file : files) {
    lines += (lines.empty() ? "\n\n" : "\n") +
             std::filesystem::path(*file.url.filePath()).filename().native() + ": " + file.reason;
  }
  return lines;
}

}  // namespace

void LayoutListAlert::showLayouts() {
  const auto stored = store_.loadAll();
  showLayoutAlert(application_, "Layouts", linesFor(stored.layouts) + linesFor(stored.unreadable),
                  Alert::Style::informational);
}

}  // namespace velto
