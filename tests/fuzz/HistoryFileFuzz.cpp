// The quick reader and the general one agree, and whatever was read comes back the same from what is written.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "browsing/history/HistoryFormat.h"
#include "platform/foundation/Text.h"

namespace {

using velto::HistoryForm;
using Step = velto::HistoryScanner::Step;
using Entries = std::vector<velto::HistoryEntry>;

void require(bool condition) {
  if (!condition) std::abort();
}

/// Scans the text in parts that grow by so many bytes.
std::optional<Entries> scan(std::string_view text, HistoryForm form, std::size_t growth) {
  Entries entries;
  velto::HistoryScanner scanner(form);
  std::size_t start = 0;
  for (std::size_t end = 0;;) {
    start += scanner.position();
    end = std::min(std::max(end + growth, start), text.size());
    scanner.more(text.substr(start, end - start));
    Step step = Step::entry;
    while ((step = scanner.next()) == Step::entry) entries.push_back(velto::readEntry(scanner.entry()));
    if (step == Step::end && end == text.size()) return entries;
    if (step != Step::cutOff || end == text.size()) return std::nullopt;
  }
}

void check(std::string_view text, const std::optional<Entries>& general, HistoryForm form) {
  const auto scanned = scan(text, form, text.size() + 1);
  require(scanned == scan(text, form, 1 + text.size() % 50));
  if (scanned && velto::isValidUtf8(text)) {
    require(general == scanned);
    require(velto::encodeHistory(*scanned, form) == text);
  }
  if (!general) return;
  const std::string written = velto::encodeHistory(*general, form);
  require(scan(written, form, written.size() + 1) == general);
  require(velto::decodeHistory(written) == *general);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::optional<Entries> general;
  try {
    general = velto::decodeHistory(text);
  } catch (const velto::JsonError&) {
    general.reset();
  }
  for (const HistoryForm form : {HistoryForm::pretty, HistoryForm::compact}) check(text, general, form);
  return 0;
}
