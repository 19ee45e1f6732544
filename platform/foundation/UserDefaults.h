#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/FileManager.h"
#include "platform/foundation/PropertyList.h"

namespace velto {

/// The person's preferences: one property list file, a dictionary from key to value.
///
/// The file is read when a value is first asked for. Before each change it is read again if it changed on
/// disk, so that edits made by other programs stay. A file that is missing or cannot be understood counts as
/// empty; one that cannot be understood is first moved aside (".damaged" added to its name, then ".damaged-2"
/// and so on) and never overwritten; one that cannot be read or moved is left alone until it can. A write
/// that fails keeps the change in memory and the old file on disk, and the next change writes both. Main
/// thread only. Never throws.
class UserDefaults {
 public:
  UserDefaults(FileManager& files, std::filesystem::path file);

  [[nodiscard]] std::optional<PropertyList> value(std::string_view key) const;
  /// Absent when the key is missing or holds neither a boolean nor the number 0 or 1.
  [[nodiscard]] std::optional<bool> boolean(std::string_view key) const;
  /// A text; a number as its shortest text, a boolean as "1" or "0". Absent for anything else.
  [[nodiscard]] std::optional<std::string> string(std::string_view key) const;
  [[nodiscard]] std::optional<WallTime> date(std::string_view key) const;
  /// Empty when the key is missing or holds something else.
  [[nodiscard]] PropertyList::Dictionary dictionary(std::string_view key) const;

  void set(std::string_view key, PropertyList value);
  void remove(std::string_view key);
  /// Forgets every key and removes the file.
  void removeAll();

 private:
  void change(std::string key, std::optional<PropertyList> value);
  void load() const;
  [[nodiscard]] bool moveAside() const;
  void applyUnsaved() const;
  void store();

  FileManager& files_;
  std::filesystem::path file_;
  mutable bool loaded_ = false;
  /// False while the file holds something that a write would destroy.
  mutable bool mayReplaceFile_ = true;
  mutable std::optional<FileInfo> seen_;
  mutable PropertyList::Dictionary values_;
  /// Changes that are not in the file yet; nothing stands for a removed key.
  std::map<std::string, std::optional<PropertyList>> unsaved_;
};

}  // namespace velto
