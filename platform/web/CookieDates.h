#pragma once

#include <compare>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/foundation/Date.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/HttpCookie.h"
#include "platform/foundation/WeakPtr.h"
#include "platform/loop/MainQueue.h"

namespace velto {

/// When cookies were first set, as far as that was told, in a file beside a cookie jar that cannot keep it.
///
/// A date belongs to the name, domain and path for as long as the jar has a cookie under them: a page that
/// sets the cookie anew leaves its date as it was, as browsers do. Writes are made in the background, a while
/// after the first of many changes; a write that fails is ignored. Main thread only.
class CookieDates : public Weakable {
 public:
  /// Beyond this nothing more is kept.
  static constexpr std::size_t kMost = 50'000;
  static constexpr double kWriteDelay = 0.5;

  /// The file's folder must exist when it is written.
  CookieDates(FileManager& files, MainQueue& queue, BackgroundQueue& background, std::filesystem::path file);
  /// Writes what is not written yet.
  ~CookieDates();
  CookieDates(const CookieDates&) = delete;
  CookieDates& operator=(const CookieDates&) = delete;

  /// Keeps the date of a cookie that is being set; nothing when it has none.
  void remember(const HttpCookie& cookie);
  /// Gives the cookies of the whole jar their dates, and forgets those of cookies that it has no more.
  void addTo(std::vector<HttpCookie>& jar);

 private:
  struct Key {
    std::string domain;
    std::string path;
    std::string name;
    auto operator<=>(const Key&) const = default;
  };
  using Dates = std::map<Key, WallTime>;
  struct Disk;

  static Key keyOf(const HttpCookie& cookie);
  static void writeNewest(Disk& disk);
  void load();
  void changed();
  void startWriting();

  MainQueue& queue_;
  BackgroundQueue& background_;
  /// Shared with the work in the background, which may outlive this.
  std::shared_ptr<Disk> disk_;
  bool loaded_ = false;
  bool writeIsDue_ = false;
  Dates dates_;
};

}  // namespace velto
