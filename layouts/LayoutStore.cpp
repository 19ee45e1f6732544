#include "layouts/LayoutStore.h"

#include <algorithm>
#include <future>
#include <iterator>
#include <set>
#include <thread>
#include <utility>

#include "layouts/LayoutFormat.h"
#include "layouts/LayoutIndex.h"
#include "layouts/LayoutSlug.h"
#include "platform/foundation/FileFailure.h"
#include "platform/foundation/Text.h"
#include "platform/foundation/Unicode.h"

namespace velto {
namespace {

constexpr std::string_view kSuffix = "veltolayout.json";

const char* wording(LayoutStoreError::Kind kind) {
  switch (kind) {
    case LayoutStoreError::Kind::unsafeIdentifier:
      break;
  }
  return "That layout has an identifier Velto cannot safely write to disk.";
}

template <class Predicate>
std::optional<Layout> first(std::vector<Layout> layouts, Predicate fits) {
  const auto found = std::find_if(layouts.begin(), layouts.end(), fits);
  if (found == layouts.end()) return std::nullopt;
  return std::move(*found);
}

void addThumbnailNames(std::set<std::string, std::less<>>& names, const Layout& layout) {
  for (const LayoutWindow& window : layout.windows) {
    if (window.thumbnail) names.insert(window.thumbnail->substr(window.thumbnail->rfind('/') + 1));
  }
}

/// What the names of a layout's pictures begin with, as the name of its file tells it.
std::string thumbnailPrefix(const UnreadableLayoutFile& file) {
  const std::string name = std::filesystem::path(file.url.filePath().value_or("")).filename().native();
  const std::size_t length = name.size() - std::min(name.size(), kSuffix.size() + 1);
  return name.substr(0, length) + '-';
}

/// Whether the name stays in the folder that it is added to.
bool isOneComponent(std::string_view name) {
  return name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

}  // namespace

LayoutStoreError::LayoutStoreError(Kind kind) : std::runtime_error(wording(kind)), kind_(kind) {}

LayoutStore::LayoutStore(FileManager& files, NotificationCenter& notifications,
                         const std::filesystem::path& applicationSupportDirectory)
    : files_(files), notifications_(notifications), directory_(applicationSupportDirectory / "Layouts") {}

std::filesystem::path LayoutStore::fileOf(std::string_view id) const {
  return directory_ / (std::string(id) + '.' + std::string(kSuffix));
}

LayoutStore::Contents LayoutStore::loadAll() const { return load().value_or(Contents()); }

LayoutStore::Contents LayoutStore::read(std::span<const std::string> names) const {
  Contents contents;
  JsonParser parser;
  for (const std::string& name : names) {
    const std::filesystem::path path = directory_ / name;
    try {
      contents.layouts.push_back(decodeLayout(parser, files_.read(path)));
    } catch (const FileError&) {
      contents.unreadable.push_back({Url::forFile(path.native()), "The file could not be read."});
    } catch (const UnreadableLayout& unreadable) {
      contents.unreadable.push_back({Url::forFile(path.native()), unreadable.what()});
    }
  }
  return contents;
}

LayoutStore::Contents LayoutStore::readOnAllCores(std::span<const std::string> names) const {
  constexpr std::size_t kWorthAThread = 64;
  constexpr unsigned kMostThreads = 8;
  const std::size_t cores = std::clamp(std::thread::hardware_concurrency(), 1U, kMostThreads);
  const std::size_t share = std::max(kWorthAThread, (names.size() + cores - 1) / cores);
  std::vector<std::future<Contents>> others;
  for (std::size_t at = share; at < names.size(); at += share) {
    const auto part = names.subspan(at, std::min(share, names.size() - at));
    // Where no thread can be had, `get` does the work.
    others.push_back(
        std::async(std::launch::async | std::launch::deferred, [this, part] { return read(part); }));
  }
  Contents contents = read(names.first(std::min(share, names.size())));
  for (std::future<Contents>& other : others) {
    Contents part = other.get();
    std::move(part.layouts.begin(), part.layouts.end(), std::back_inserter(contents.layouts));
    std::move(part.unreadable.begin(), part.unreadable.end(), std::back_inserter(contents.unreadable));
  }
  return contents;
}

std::optional<LayoutStore::Contents> LayoutStore::load() const {
  std::vector<std::string> names;
  try {
    names = files_.list(directory_);
  } catch (const FileError&) {
    return std::nullopt;
  }
  std::erase_if(names,
                [](const std::string& name) { return name.starts_with('.') || !name.ends_with(kSuffix); });
  Contents contents = readOnAllCores(names);
  std::stable_sort(contents.layouts.begin(), contents.layouts.end(),
                   [](const Layout& a, const Layout& b) { return a.updatedAt > b.updatedAt; });
  return contents;
}

std::optional<Layout> LayoutStore::layoutWithId(std::string_view id) const {
  return first(loadAll().layouts, [&](const Layout& layout) { return layout.id == id; });
}

std::optional<Layout> LayoutStore::layoutWithSlug(std::string_view slug) const {
  const std::string wanted = lowercased(slug);
  std::vector<Layout> layouts = loadAll().layouts;
  const std::vector<std::string> slugs = slugsOf(layouts);
  const auto found = std::find(slugs.begin(), slugs.end(), wanted);
  if (found == slugs.end()) return std::nullopt;
  return std::move(layouts[static_cast<std::size_t>(found - slugs.begin())]);
}

std::optional<Layout> LayoutStore::layoutNamed(std::string_view name) const {
  const std::string wanted = composed(lowercased(name));
  return first(loadAll().layouts,
               [&](const Layout& layout) { return composed(lowercased(layout.name)) == wanted; });
}

void LayoutStore::save(const Layout& layout) {
  createDirectories();
  if (!isSafeIdentifier(layout.id)) throw LayoutStoreError(LayoutStoreError::Kind::unsafeIdentifier);
  files_.writeAtomically(fileOf(layout.id), encodeJson(layout));
  settle(layout.id, &layout);
}

void LayoutStore::deleteLayout(std::string_view id) {
  if (isOneComponent(id)) removeFile(fileOf(id));
  settle(id, nullptr);
}

bool LayoutStore::hasFileOf(std::string_view id) const {
  return isOneComponent(id) && files_.exists(fileOf(id));
}

void LayoutStore::removeFile(const std::filesystem::path& path) {
  const auto info = files_.info(path);
  if (info && info->type != FileInfo::Type::directory) files_.remove(path);
}

void LayoutStore::settle(std::string_view id, const Layout* kept) {
  // Without the other layouts there is no telling which pictures they name.
  if (const auto stored = load()) {
    prune(id, kept, *stored);
    writeIndex(*stored);
  }
  notifications_.post(kLayoutsDidChange);
}

std::string LayoutStore::writeThumbnail(std::string_view pngData, std::string_view layoutId,
                                        std::string_view windowId) {
  const std::string name = std::string(layoutId) + '-' + std::string(windowId);
  if (!isSafeIdentifier(name)) throw LayoutStoreError(LayoutStoreError::Kind::unsafeIdentifier);
  createDirectories();
  const auto folder = files_.info(thumbnails());
  if (!folder || folder->type != FileInfo::Type::directory) {
    throw fileFailure(FileError::Kind::notDirectory, FileOperation::list, thumbnails());
  }
  files_.writeAtomically(thumbnails() / (name + ".png"), pngData);
  return "thumbs/" + name + ".png";
}

void LayoutStore::setThumbnails(std::string_view layoutId, const ThumbnailPaths& paths) {
  if (!isSafeIdentifier(layoutId)) throw LayoutStoreError(LayoutStoreError::Kind::unsafeIdentifier);
  JsonParser parser;
  Layout layout = decodeLayout(parser, files_.read(fileOf(layoutId)));
  std::set<std::string, std::less<>> unused;
  for (const auto& entry : paths) unused.insert(entry.second);
  for (LayoutWindow& window : layout.windows) {
    const auto path = paths.find(window.id);
    if (path == paths.end()) continue;
    window.thumbnail = path->second;
    unused.erase(path->second);
  }
  files_.writeAtomically(fileOf(layoutId), encodeJson(layout));
  if (!unused.empty()) {
    removeThumbnails([&](const std::string& name) { return unused.contains("thumbs/" + name); });
  }
  notifications_.post(kLayoutsDidChange);
}

void LayoutStore::createDirectories() {
  files_.createDirectory(directory_);
  files_.createDirectory(thumbnails());
}

void LayoutStore::prune(std::string_view id, const Layout* kept, const Contents& stored) {
  const std::string prefix = std::string(id) + '-';
  std::set<std::string, std::less<>> named;
  if (kept != nullptr) addThumbnailNames(named, *kept);
  for (const Layout& layout : stored.layouts) addThumbnailNames(named, layout);
  std::vector<std::string> unknown;  // what a file that cannot be read may name
  for (const UnreadableLayoutFile& file : stored.unreadable) {
    if (thumbnailPrefix(file).starts_with(prefix)) unknown.push_back(thumbnailPrefix(file));
  }
  removeThumbnails([&](const std::string& name) {
    return name.starts_with(prefix) && !named.contains(name) &&
           std::none_of(unknown.begin(), unknown.end(),
                        [&](const std::string& start) { return name.starts_with(start); });
  });
}

void LayoutStore::removeThumbnails(const std::function<bool(const std::string& name)>& goes) {
  const auto folder = files_.info(thumbnails());
  if (!folder || folder->type != FileInfo::Type::directory) return;  // behind a link lie the files of others
  std::vector<std::string> names;
  try {
    names = files_.list(thumbnails());
  } catch (const FileError&) {
    return;
  }
  for (const std::string& name : names) {
    try {
      if (goes(name)) removeFile(thumbnails() / name);
    } catch (const FileError&) {
      // It stays until the next change of its layout.
    }
  }
}

void LayoutStore::removeAllThumbnails() {
  removeThumbnails([](const std::string&) { return true; });
  for (Layout& layout : loadAll().layouts) {
    const auto isNamed = [](const LayoutWindow& window) { return window.thumbnail.has_value(); };
    if (std::none_of(layout.windows.begin(), layout.windows.end(), isNamed)) continue;
    for (LayoutWindow& window : layout.windows) window.thumbnail.reset();
    try {
      save(layout);
    } catch (const std::runtime_error&) {
      // The layout goes on naming a picture that is gone, which shows as none.
    }
  }
  notifications_.post(kLayoutsDidChange);
}

void LayoutStore::writeIndex(const Contents& stored) {
  try {
    files_.writeAtomically(directory_ / "index.txt", layoutIndex(stored.layouts));
  } catch (const FileError&) {
    // The next start writes it.
  }
}

void LayoutStore::prepare() {
  for (const auto& folder : {directory_.parent_path(), directory_, thumbnails()}) {
    files_.removeAbandonedWrites(folder);
  }
  refreshIndexIfStale();
}

void LayoutStore::refreshIndexIfStale() {
  const auto stored = load();
  if (!stored) return;
  if (files_.readIfPossible(directory_ / "index.txt") != layoutIndex(stored->layouts)) writeIndex(*stored);
}

}  // namespace velto
