#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "layouts/Layout.h"
#include "layouts/UnreadableLayoutFile.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/WeakPtr.h"

namespace velto {

/// Posted after each change of the layouts. It carries nothing: who listens loads again.
constexpr std::string_view kLayoutsDidChange = "layoutsDidChange";

/// A layout that must not be written. `what()` is worded for the person.
class LayoutStoreError : public std::runtime_error {
 public:
  enum class Kind { unsafeIdentifier };
  explicit LayoutStoreError(Kind kind);
  [[nodiscard]] Kind kind() const { return kind_; }

 private:
  Kind kind_;
};

/// The saved layouts: one file `<id>.veltolayout.json` for each, their pictures in "thumbs/", and for readers
/// outside the program a list of all of them, "index.txt".
///
/// Nothing is kept in memory: each question reads the files again. What cannot be read is reported and stays.
/// Nothing outside the folder is ever written or removed, whatever an identifier or a link in the folder
/// says. Main thread only.
class LayoutStore : public Weakable {
 public:
  struct Contents {
    /// The last updated first.
    std::vector<Layout> layouts;
    /// By the file's name.
    std::vector<UnreadableLayoutFile> unreadable;
  };

  /// From the identifier of a window to the path of its picture.
  using ThumbnailPaths = std::map<std::string, std::string>;

  LayoutStore(FileManager& files, NotificationCenter& notifications,
              const std::filesystem::path& applicationSupportDirectory);

  [[nodiscard]] const std::filesystem::path& directory() const { return directory_; }

  /// Whether there is a file under the layout's identifier. Reads nothing. Never throws.
  [[nodiscard]] bool hasFileOf(std::string_view id) const;
  /// Empty when the folder cannot be listed. Never throws.
  [[nodiscard]] Contents loadAll() const;
  [[nodiscard]] std::optional<Layout> layoutWithId(std::string_view id) const;
  /// By its short name, whatever its case.
  [[nodiscard]] std::optional<Layout> layoutWithSlug(std::string_view slug) const;
  /// By its name, whatever its case; of several the last updated one.
  [[nodiscard]] std::optional<Layout> layoutNamed(std::string_view name) const;

  /// Writes the layout and removes those of its pictures that no layout names any more. Throws `FileError`,
  /// `LayoutStoreError` or `JsonError`; then the old file is as it was.
  void save(const Layout& layout);
  /// Removes the layout's file, if there is one, and its pictures. Throws `FileError`.
  void deleteLayout(std::string_view id);
  /// Returns the path for `LayoutWindow::thumbnail`. Posts nothing. Throws `FileError` or `LayoutStoreError`.
  std::string writeThumbnail(std::string_view pngData, std::string_view layoutId, std::string_view windowId);
  /// Puts pictures into a layout that has a file under its identifier, in one write of that file. One whose
  /// window is gone is removed. Throws `FileError`, `UnreadableLayout` or what `save` throws.
  void setThumbnails(std::string_view layoutId, const ThumbnailPaths& paths);
  void removeAllThumbnails();
  /// Once after the start: removes what killed writers left in the folders, then `refreshIndexIfStale`.
  void prepare();
  /// Writes "index.txt" anew unless it says already what it should. Posts nothing.
  void refreshIndexIfStale();

 private:
  [[nodiscard]] std::filesystem::path fileOf(std::string_view id) const;
  [[nodiscard]] std::filesystem::path thumbnails() const { return directory_ / "thumbs"; }
  /// Nothing when the folder cannot be listed.
  [[nodiscard]] std::optional<Contents> load() const;
  /// The parts of a long list at the same time. The files come in the order of the names.
  [[nodiscard]] Contents readOnAllCores(std::span<const std::string> names) const;
  [[nodiscard]] Contents read(std::span<const std::string> names) const;
  void createDirectories();
  /// Removes the pictures of one layout that neither `kept` nor a layout on disk names.
  void prune(std::string_view id, const Layout* kept, const Contents& stored);
  /// Never a folder with what it holds.
  void removeFile(const std::filesystem::path& path);
  void removeThumbnails(const std::function<bool(const std::string& name)>& goes);
  void writeIndex(const Contents& stored);
  /// After a change of the file of the layout `id`; `kept` is the layout if it is still there.
  void settle(std::string_view id, const Layout* kept);

  FileManager& files_;
  NotificationCenter& notifications_;
  std::filesystem::path directory_;
};

}  // namespace velto
