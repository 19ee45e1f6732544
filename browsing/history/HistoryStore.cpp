#include "browsing/history/HistoryStore.h"

#include <algorithm>
#include <utility>

#include "browsing/history/HistoryFile.h"

namespace velto {
namespace {

/// How many entries a file has, told from its first ones.
std::size_t estimatedCount(std::size_t entries, std::size_t bytes, std::uint64_t fileSize) {
  constexpr double kMargin = 1.05;
  return static_cast<std::size_t>(kMargin * static_cast<double>(entries) / static_cast<double>(bytes) *
                                  static_cast<double>(fileSize));
}

std::optional<Url> firstWebPage(const std::vector<HistoryEntry>& entries) {
  for (const HistoryEntry& entry : entries) {
    auto url = Url::parse(entry.url);
    if (!url) continue;
    const std::string scheme = url->lowercasedScheme();
    if (scheme == "http" || scheme == "https") return url;
  }
  return std::nullopt;
}

/// Of several visits of one page in a row the last one counts.
std::vector<HistoryEntry> newestFirst(std::span<const HistoryEntry> visits) {
  std::vector<HistoryEntry> entries;
  for (auto visit = visits.rbegin(); visit != visits.rend(); ++visit) {
    if (entries.empty() || entries.back().url != visit->url) entries.push_back(*visit);
  }
  return entries;
}

}  // namespace

HistoryStore::HistoryStore(FileManager& fileManager, std::filesystem::path directory, std::string fileName,
                           bool prettyPrinted)
    : fileManager_(fileManager),
      directory_(std::move(directory)),
      fileName_(std::move(fileName)),
      prettyPrinted_(prettyPrinted) {}

std::vector<HistoryEntry> HistoryStore::load() const {
  try {
    if (auto entries = loadAsWritten()) return std::move(*entries);
    return decodeHistory(fileManager_.read(fileURL()));
  } catch (const FileError&) {
    return {};
  } catch (const JsonError&) {
    return {};
  }
}

std::vector<HistoryEntry> HistoryStore::newest(std::size_t count) const {
  try {
    if (auto entries = newestAsWritten(count)) return std::move(*entries);
  } catch (const FileError&) {
    return {};
  }
  auto entries = load();
  entries.resize(std::min(count, entries.size()));
  return entries;
}

void HistoryStore::save(const std::vector<HistoryEntry>& entries) {
  fileManager_.createDirectory(directory_);
  fileManager_.writeAtomically(fileURL(), encodeHistory(entries, form()));
}

void HistoryStore::recordAll(std::span<const HistoryEntry> visits) {
  if (visits.empty()) return;
  auto entries = newestFirst(visits);
  if (recordByCopying(entries)) return;
  const auto before = load();
  const bool replaces = !before.empty() && before.front().url == entries.back().url;
  entries.insert(entries.end(), before.begin() + (replaces ? 1 : 0), before.end());
  save(entries);
}

std::optional<std::vector<HistoryEntry>> HistoryStore::loadAsWritten() const {
  constexpr std::size_t kSample = 512;
  const auto file = fileManager_.open(fileURL());
  const std::uint64_t size = file->info().size;
  std::vector<HistoryEntry> entries;
  const auto info = walkWholeHistory(*file, form(), [&](const HistoryScanner& scanner) {
    if (entries.size() == kSample) entries.reserve(estimatedCount(kSample, scanner.position(), size));
    entries.push_back(readEntry(scanner.entry()));
    return true;
  });
  if (!info) return std::nullopt;
  remember(*info);
  return entries;
}

std::optional<std::vector<HistoryEntry>> HistoryStore::newestAsWritten(std::size_t count) const {
  const auto file = fileManager_.open(fileURL());
  if (!knownInfo(*file)) return std::nullopt;
  std::vector<HistoryEntry> entries;
  const bool asWritten = count == 0 || walkHistory(*file, form(), [&](const HistoryScanner& scanner) {
                           entries.push_back(readEntry(scanner.entry()));
                           return entries.size() < count;
                         });
  return asWritten ? std::optional(std::move(entries)) : std::nullopt;
}

bool HistoryStore::recordByCopying(std::span<const HistoryEntry> entries) {
  std::unique_ptr<FileReader> file;
  std::optional<FileInfo> info;
  std::optional<HistoryBeginning> beginning;
  try {
    file = fileManager_.open(fileURL());
    info = knownInfo(*file);
    if (info) beginning = beginningWith(entries, *file, form());
  } catch (const FileError&) {
    return false;
  }
  if (!beginning) return false;
  const auto written =
      fileManager_.replaceBeginning(fileURL(), beginning->bytes, *file, beginning->restOffset, *info);
  if (written) remember(*written);
  return written.has_value();
}

std::optional<FileInfo> HistoryStore::knownInfo(const FileReader& file) const {
  const FileInfo info = file.info();
  // The clock of a file system goes in steps: what was changed within one of them could look the same. Its
  // beginning is read anyway.
  if (remembers(info) && endsAsHistory(file, info, form())) return info;
  const auto walked = walkWholeHistory(file, form(), [](const HistoryScanner&) { return true; });
  if (walked) remember(*walked);
  return walked;
}

void HistoryStore::remember(const FileInfo& info) const {
  const std::lock_guard lock(mutex_);
  known_ = info;
}

bool HistoryStore::remembers(const FileInfo& info) const {
  const std::lock_guard lock(mutex_);
  return known_ == info;
}

std::optional<Url> newestWebPage(const HistoryStore& store) {
  constexpr std::size_t kFew = 15;
  if (auto page = firstWebPage(store.newest(kFew))) return page;
  return firstWebPage(store.load());
}

}  // namespace velto
