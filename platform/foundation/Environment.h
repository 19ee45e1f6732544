#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velto {

/// Where and how this process was started, read once at its start.
struct Environment {
  /// Without the program's own name.
  std::vector<std::string> arguments;
  std::map<std::string, std::string, std::less<>> variables;
  int processId = 0;
  /// `$XDG_DATA_HOME/Velto` (else below `~/.local/share`): everything that the application stores as a file.
  std::filesystem::path applicationSupportDirectory;
  /// `$XDG_CONFIG_HOME/Velto/Preferences` (else below `~/.config`).
  std::filesystem::path preferencesDirectory;
  /// `$XDG_CACHE_HOME/Velto` (else below `~/.cache`): what may be lost at any time.
  std::filesystem::path cacheDirectory;
  /// Below the caches, where it is private to the person: what is of use for a moment only.
  std::filesystem::path temporaryDirectory;
  /// The person's documents folder as `user-dirs.dirs` tells it; absent when it is not set or not there.
  std::optional<std::filesystem::path> documentsDirectory;
  /// The pages, scripts and icons that belong to the program: `../share/velto` from the program's own folder.
  std::filesystem::path resourcesDirectory;

  [[nodiscard]] std::optional<std::string> variable(std::string_view name) const;
  /// `HOVREL_UI_TEST_MODE` is exactly "1".
  [[nodiscard]] bool isTestMode() const;
};

/// Reads the process's own environment. Relative paths in the XDG variables count as unset.
Environment readEnvironment(int argc, const char* const* argv);

/// The documents folder from the text of `user-dirs.dirs`: the last `XDG_DOCUMENTS_DIR="$HOME/..."` or
/// absolute path; absent when missing or set to the home folder itself.
std::optional<std::filesystem::path> parseDocumentsDirectory(std::string_view userDirs,
                                                             const std::filesystem::path& home);

}  // namespace velto
