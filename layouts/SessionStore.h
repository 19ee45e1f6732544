#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "layouts/VeltoSession.h"
#include "platform/foundation/FileManager.h"

namespace velto {

/// The file of the last session, "Session.json". Any thread, one call at a time.
class SessionStore {
 public:
  SessionStore(FileManager& files, std::filesystem::path applicationSupportDirectory);

  /// Nothing when the file is missing, damaged or of a newer format. Never throws.
  [[nodiscard]] std::optional<VeltoSession> load() const;
  /// Throws `FileError` or `JsonError`; then the old file is as it was.
  void save(const VeltoSession& session) { write(encodeJson(session)); }
  /// The same in two steps, for a session that is encoded on one thread and written on another.
  void write(std::string_view encoded);

 private:
  [[nodiscard]] std::filesystem::path file() const { return directory_ / "Session.json"; }

  FileManager& files_;
  std::filesystem::path directory_;
};

}  // namespace velto
