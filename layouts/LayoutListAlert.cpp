#include "layouts/LayoutListAlert.h"

#include <algorithm>
#include <string>

#include "layouts/LayoutAlert.h"
#include "layouts/LayoutNames.h"
#include "layouts/LayoutSlug.h"

namespace velto {
namespace {

/// As many as an alert shows without cutting them off; files that cannot be read come first to them.
constexpr std::size_t kMostLines = 15;
constexpr std::size_t kMostFileLines = 5;
constexpr std::size_t kLongestName = 60;
constexpr const char* kNone =
    "There are no layouts yet. Arrange some windows, then run `velto layouts save NAME`.";

std::string linesFor(const std::vector<Layout>& layouts, std::size_t limit) {
  if (layouts.empty()) return kNone;
  const auto slugs = slugsOf(layouts);
  std::string lines;
  for (std::size_t i = 0; i < layouts.size() && i < limit; ++i) {
    lines += shortened(layouts[i].name, kLongestName) + " (" + countedWindows(layouts[i].windows.size()) +
             "): velto " + slugs[i] + "\n";
  }
  if (layouts.size() > limit) {
    lines += "and " + std::to_string(layouts.size() - limit) +
             " more. Run `velto layouts list` to see all of them.\n";
  }
  lines.pop_back();
  return lines;
}

std::string linesFor(const std::vector<UnreadableLayoutFile>& files) {
  std::string lines;
  if (files.size() > kMostFileLines) {
    return "\n\n" + std::to_string(files.size()) + " files could not be read.";
  }
  for (const UnreadableLayoutFile& file : files) {
    lines += (lines.empty() ? "\n\n" : "\n") +
             std::filesystem::path(*file.url.filePath()).filename().native() + ": " + file.reason;
  }
  return lines;
}

}  // namespace

void LayoutListAlert::showLayouts() {
  const auto stored = store_.loadAll();
  const std::string files = linesFor(stored.unreadable);
  const auto taken = static_cast<std::size_t>(std::count(files.begin(), files.end(), '\n'));
  showLayoutAlert(application_, "Layouts", linesFor(stored.layouts, kMostLines - taken) + files,
                  Alert::Style::informational);
}

}  // namespace velto
