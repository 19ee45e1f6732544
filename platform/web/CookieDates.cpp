#include "platform/web/CookieDates.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <mutex>
#include <optional>
#include <utility>

#include "platform/foundation/JsonRecord.h"
#include "platform/foundation/Text.h"

namespace velto {
namespace {

/// Far more than the application itself writes.
constexpr std::uint64_t kLargestFile = 64U << 20;

/// One date as the file has it, in seconds since 1970 with their fraction.
struct StoredDate {
  double created = 0;
  std::string domain;
  std::string name;
  std::string path;
};

struct StoredDates {
  std::vector<StoredDate> cookies;
};

}  // namespace

template <>
struct JsonFields<StoredDate> {
  static constexpr std::array kFields = {
      jsonField<&StoredDate::created>("created"), jsonField<&StoredDate::domain>("domain"),
      jsonField<&StoredDate::name>("name"), jsonField<&StoredDate::path>("path")};
};

template <>
struct JsonFields<StoredDates> {
  static constexpr std::array kFields = {jsonField<&StoredDates::cookies>("cookies")};
};

namespace {

StoredDates readStored(FileManager& files, const std::filesystem::path& file) {
  try {
    const auto info = files.info(file);
    if (!info || info->size > kLargestFile) return {};
    JsonParser parser;
    return decodeJson<StoredDates>(parser.parse(files.read(file)));
  } catch (const FileError&) {
  } catch (const JsonError&) {
  }
  return {};
}

}  // namespace

struct CookieDates::Disk {
  FileManager& files;
  std::filesystem::path file;
  /// Held during a write.
  std::mutex writing = {};
  /// Held for a moment, to look at what waits.
  std::mutex slot = {};
  std::optional<Dates> waiting = {};
};

CookieDates::CookieDates(FileManager& files, MainQueue& queue, BackgroundQueue& background,
                         std::filesystem::path file)
    : queue_(queue), background_(background), disk_(new Disk{files, std::move(file)}) {}

CookieDates::~CookieDates() {
  if (writeIsDue_) disk_->waiting = std::move(dates_);
  writeNewest(*disk_);
}

void CookieDates::remember(const HttpCookie& cookie) {
  if (!cookie.created || !std::isfinite(cookie.created->secondsSince1970)) return;
  load();
  Key key = keyOf(cookie);
  if (dates_.size() >= kMost && !dates_.contains(key)) return;
  dates_.insert_or_assign(std::move(key), *cookie.created);
  changed();
}

void CookieDates::addTo(std::vector<HttpCookie>& jar) {
  load();
  if (dates_.empty()) return;
  Dates kept;
  for (HttpCookie& cookie : jar) {
    const auto found = dates_.find(keyOf(cookie));
    if (found == dates_.end()) continue;
    cookie.created = found->second;
    kept.insert(*found);
  }
  const bool someAreGone = kept.size() < dates_.size();
  dates_ = std::move(kept);
  if (someAreGone) changed();
}

CookieDates::Key CookieDates::keyOf(const HttpCookie& cookie) {
  return {lowercased(cookie.domain), cookie.path, cookie.name};
}

void CookieDates::load() {
  if (std::exchange(loaded_, true)) return;
  for (StoredDate& stored : readStored(disk_->files, disk_->file).cookies) {
    if (dates_.size() >= kMost) return;
    dates_.insert_or_assign({std::move(stored.domain), std::move(stored.path), std::move(stored.name)},
                            WallTime{stored.created});
  }
}

void CookieDates::changed() {
  if (std::exchange(writeIsDue_, true)) return;
  queue_.after(kWriteDelay, [self = WeakPtr<CookieDates>(*this)] {
    if (self) self->startWriting();
  });
}

void CookieDates::startWriting() {
  writeIsDue_ = false;
  {
    const std::lock_guard lock(disk_->slot);
    disk_->waiting = dates_;
  }
  background_.async([disk = disk_] { writeNewest(*disk); });
}

void CookieDates::writeNewest(Disk& disk) {
  const std::lock_guard writing(disk.writing);
  std::optional<Dates> dates;
  {
    const std::lock_guard lock(disk.slot);
    dates = std::exchange(disk.waiting, std::nullopt);
  }
  if (!dates) return;
  StoredDates stored;
  for (const auto& [key, created] : *dates) {
    stored.cookies.push_back({created.secondsSince1970, key.domain, key.name, key.path});
  }
  try {
    disk.files.writeAtomically(disk.file, encodeJson(stored));
  } catch (const FileError&) {
    // The cookies themselves are safe in their jar.
  }
}

}  // namespace velto
