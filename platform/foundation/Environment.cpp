#include "platform/foundation/Environment.h"

#include <cstring>
#include <system_error>

#include <pwd.h>
#include <unistd.h>

#include "platform/foundation/PosixFileManager.h"
#include "platform/foundation/Text.h"

namespace velto {
namespace {

using Path = std::filesystem::path;

std::map<std::string, std::string, std::less<>> readVariables() {
  std::map<std::string, std::string, std::less<>> variables;
  for (char** entry = ::environ; entry != nullptr && *entry != nullptr; ++entry) {
    const std::string_view text = *entry;
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) continue;
    variables.emplace(text.substr(0, equals), text.substr(equals + 1));
  }
  return variables;
}

std::optional<Path> absolutePath(const Environment& environment, std::string_view variable) {
  Path path = environment.variable(variable).value_or("");
  return path.is_absolute() ? std::optional(std::move(path)) : std::nullopt;
}

Path homeDirectory(const Environment& environment) {
  if (const auto home = absolutePath(environment, "HOME")) return *home;
  std::string buffer(16384, '\0');
  passwd entry{};
  passwd* found = nullptr;
  ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
  return found != nullptr && found->pw_dir != nullptr ? Path(found->pw_dir) : Path("/");
}

Path resourcesDirectory() {
  std::error_code error;
  const Path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? Path("/usr/share/velto") : program.parent_path().parent_path() / "share" / "velto";
}

/// Without the trailing slash that would make equal paths differ.
Path normal(const Path& path) {
  const Path normal = path.lexically_normal();
  return normal.has_filename() || !normal.has_relative_path() ? normal : normal.parent_path();
}

/// The text between double quotes, in which a backslash takes the next character as it is.
std::optional<std::string> unquoted(std::string_view text) {
  if (!text.starts_with('"')) return std::nullopt;
  std::string out;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"') return out;
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    out += text[i];
  }
  return std::nullopt;
}

/// The folder that a line of `user-dirs.dirs` sets; absent for every other line.
std::optional<Path> documentsInLine(std::string_view line, const Path& home) {
  line = trimWhitespaceAndNewlines(line);
  constexpr std::string_view kName = "XDG_DOCUMENTS_DIR";
  if (!line.starts_with(kName)) return std::nullopt;
  line = trimWhitespace(line.substr(kName.size()));
  if (!line.starts_with('=')) return std::nullopt;
  const std::optional<std::string> value = unquoted(trimWhitespace(line.substr(1)));
  if (!value) return std::nullopt;
  constexpr std::string_view kHome = "$HOME";
  const std::string_view text = *value;
  if (text == kHome || text.starts_with("$HOME/"))
    return Path(home.native() + "/" + value->substr(kHome.size()));
  return text.starts_with('/') ? std::optional<Path>(text) : std::nullopt;
}

std::optional<Path> documentsDirectory(const Path& configuration, const Path& home) {
  const auto text = PosixFileManager().readIfPossible(configuration / "user-dirs.dirs");
  const std::optional<Path> documents = text ? parseDocumentsDirectory(*text, home) : std::nullopt;
  std::error_code error;
  return documents && std::filesystem::is_directory(*documents, error) ? documents : std::nullopt;
}

}  // namespace

std::optional<std::string> Environment::variable(std::string_view name) const {
  const auto found = variables.find(name);
  return found == variables.end() ? std::nullopt : std::optional(found->second);
}

bool Environment::isTestMode() const { return variable("HOVREL_UI_TEST_MODE") == "1"; }

Environment readEnvironment(int argc, const char* const* argv) {
  Environment environment;
  if (argc > 1) environment.arguments.assign(argv + 1, argv + argc);
  environment.variables = readVariables();
  environment.processId = ::getpid();
  const Path home = homeDirectory(environment);
  const Path configuration = absolutePath(environment, "XDG_CONFIG_HOME").value_or(home / ".config");
  environment.applicationSupportDirectory =
      absolutePath(environment, "XDG_DATA_HOME").value_or(home / ".local/share") / "Velto";
  environment.preferencesDirectory = configuration / "Velto" / "Preferences";
  environment.cacheDirectory =
      absolutePath(environment, "XDG_CACHE_HOME").value_or(home / ".cache") / "Velto";
  environment.temporaryDirectory = environment.cacheDirectory / "Temporary";
  environment.documentsDirectory = documentsDirectory(configuration, home);
  environment.resourcesDirectory = resourcesDirectory();
  return environment;
}

std::optional<Path> parseDocumentsDirectory(std::string_view userDirs, const Path& home) {
  std::optional<Path> documents;
  for (const std::string_view line : splitOmittingEmpty(userDirs, '\n')) {
    if (auto found = documentsInLine(line, home)) documents = normal(*found);
  }
  return documents == normal(home) ? std::nullopt : documents;
}

}  // namespace velto
