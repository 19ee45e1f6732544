#include "platform/foundation/PosixFileManager.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <random>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/foundation/FileFailure.h"

namespace velto {
namespace {

using Path = std::filesystem::path;

constexpr std::string_view kAsidePrefix = ".velto-";
/// A history of ten million pages comes near it, and nothing else that this program keeps.
constexpr std::size_t kLargestFile = std::size_t{2} << 30U;

FileError::Kind kindOf(int error) {
  switch (error) {
    case ENOENT:
      return FileError::Kind::notFound;
    case EACCES:
    case EPERM:
    case EROFS:
      return FileError::Kind::notPermitted;
    case EEXIST:
    case ENOTEMPTY:
      return FileError::Kind::alreadyExists;
    case EISDIR:
      return FileError::Kind::isDirectory;
    case ENOTDIR:
      return FileError::Kind::notDirectory;
    case ENOSPC:
    case EDQUOT:
      return FileError::Kind::noSpace;
    default:
      return FileError::Kind::other;
  }
}

[[noreturn]] void fail(FileOperation operation, const Path& path, int error) {
  throw fileFailure(kindOf(error), operation, path, std::generic_category().message(error));
}

/// A name that holds a NUL would reach the system shortened, as another file's.
const Path& checked(FileOperation operation, const Path& path) {
  if (path.native().find('\0') != std::string::npos) fail(operation, path, EINVAL);
  return path;
}

/// An open file that is closed at the end of its scope.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { close(); }
  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  /// Whether what was written before is known to have been taken.
  bool close() { return number_ < 0 || ::close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

Descriptor openRetrying(const Path& path, int flags) {
  int number = -1;
  do {
    number = ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, 0600);
  } while (number < 0 && errno == EINTR);
  return Descriptor(number);
}

/// Opens a plain file; without waiting, so that a pipe in its place cannot hold the program.
Descriptor openFile(FileOperation operation, const Path& path, int flags) {
  Descriptor file = openRetrying(checked(operation, path), flags);
  struct stat status {};
  if (!file.isOpen() || ::fstat(file.number(), &status) != 0) fail(operation, path, errno);
  if (S_ISDIR(status.st_mode)) fail(operation, path, EISDIR);
  if (!S_ISREG(status.st_mode)) fail(operation, path, EINVAL);
  return file;
}

/// Returns 0 or the error.
int writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

WallTime wallTime(const timespec& time) {
  return {static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9};
}

FileInfo fileInfo(const struct stat& status) {
  FileInfo info;
  info.type = S_ISREG(status.st_mode)   ? FileInfo::Type::file
              : S_ISDIR(status.st_mode) ? FileInfo::Type::directory
              : S_ISLNK(status.st_mode) ? FileInfo::Type::symbolicLink
                                        : FileInfo::Type::other;
  info.size = static_cast<std::uint64_t>(status.st_size);
  info.device = status.st_dev;
  info.inode = status.st_ino;
  info.modified = wallTime(status.st_mtim);
  info.changed = wallTime(status.st_ctim);
  return info;
}

FileInfo infoOf(const Descriptor& file, const Path& path) {
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) fail(FileOperation::read, path, errno);
  return fileInfo(status);
}

class PosixFileReader final : public FileReader {
 public:
  explicit PosixFileReader(const Path& path)
      : path_(path), file_(openFile(FileOperation::read, path, O_RDONLY)) {}

  [[nodiscard]] std::size_t read(std::uint64_t offset, std::span<char> buffer) const override {
    std::size_t filled = 0;
    while (filled < buffer.size()) {
      const ssize_t count = ::pread(file_.number(), buffer.data() + filled, buffer.size() - filled,
                                    static_cast<off_t>(offset + filled));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) fail(FileOperation::read, path_, errno);
      if (count == 0) break;
      filled += static_cast<std::size_t>(count);
    }
    return filled;
  }
  [[nodiscard]] FileInfo info() const override { return infoOf(file_, path_); }
  [[nodiscard]] int descriptor() const { return file_.number(); }

 private:
  Path path_;
  Descriptor file_;
};

/// Copies through the memory what stands from the offset on. Returns 0 or the error.
int copyBytes(int from, off_t offset, int to) {
  constexpr std::size_t kPiece = 1U << 20U;
  std::string piece(kPiece, '\0');
  for (;;) {
    const ssize_t count = ::pread(from, piece.data(), piece.size(), offset);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) return 0;
    const int error = writeAll(to, std::string_view(piece).substr(0, static_cast<std::size_t>(count)));
    if (error != 0) return error;
    offset += count;
  }
}

/// The same inside the system where it can.
int copyRest(int from, off_t offset, int to) {
  constexpr std::size_t kAtOnce = 1U << 30U;
  for (;;) {
    const ssize_t count = ::copy_file_range(from, &offset, to, nullptr, kAtOnce, 0);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0)
      return copyBytes(from, offset, to);  // some file systems can not, or say that they are done
  }
}

/// A file beside the one to be replaced, removed at the end of its scope unless it took that one's place.
class TemporaryFile {
 public:
  explicit TemporaryFile(const Path& target) : target_(target) {
    std::random_device random;
    constexpr int kAttempts = 16;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
      std::array<char, 48> name{};
      std::snprintf(name.data(), name.size(), "%s%d-%08x%08x", kAsidePrefix.data(), ::getpid(), random(),
                    random());
      path_ = target.parent_path() / name.data();
      file_ = openRetrying(path_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW);
      if (file_.isOpen()) return;
      if (errno != EEXIST) break;
    }
    fail(FileOperation::write, target, errno);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!replaced_) ::unlink(path_.c_str());
  }

  void write(std::string_view bytes) { require(writeAll(file_.number(), bytes)); }
  void writeRest(int file, off_t offset) { require(copyRest(file, offset, file_.number())); }
  void flush() {
    if (::fsync(file_.number()) != 0) fail(FileOperation::write, target_, errno);
  }
  void close() {
    if (!file_.close()) fail(FileOperation::write, target_, errno);
  }
  [[nodiscard]] FileInfo info() const { return infoOf(file_, target_); }

  void replaceTarget() {
    if (::rename(path_.c_str(), target_.c_str()) != 0) fail(FileOperation::write, target_, errno);
    replaced_ = true;
  }

 private:
  void require(int error) const {
    if (error != 0) fail(FileOperation::write, target_, error);
  }

  const Path& target_;
  Path path_;
  Descriptor file_{-1};
  bool replaced_ = false;
};

/// Makes the new name survive a loss of power. Not every file system can, and the file is whole either way.
void flushFolder(const Path& folder) {
  const Descriptor directory = openRetrying(folder, O_RDONLY | O_DIRECTORY);
  if (directory.isOpen()) ::fsync(directory.number());
}

/// The process that wrote aside under this name; absent for the name of any other file.
std::optional<pid_t> writerOf(std::string_view name) {
  constexpr std::size_t kRandomLength = 16;
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  if (!name.starts_with(kAsidePrefix)) return std::nullopt;
  name.remove_prefix(kAsidePrefix.size());
  pid_t writer = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), writer);
  const std::string_view rest(end, static_cast<std::size_t>(name.data() + name.size() - end));
  const bool fits = error == std::errc() && writer > 0 && rest.size() == kRandomLength + 1 &&
                    rest.front() == '-' && rest.find_first_not_of(kHexDigits, 1) == std::string_view::npos;
  return fits ? std::optional(writer) : std::nullopt;
}

bool isDead(pid_t process) { return ::kill(process, 0) != 0 && errno == ESRCH; }

bool isDirectory(const Path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

std::string PosixFileManager::read(const Path& path) const {
  const Descriptor file = openFile(FileOperation::read, path, O_RDONLY);
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) fail(FileOperation::read, path, errno);
  if (static_cast<std::size_t>(status.st_size) > kLargestFile) fail(FileOperation::read, path, EFBIG);
  // The byte of room beyond what should be there tells the end of the file from a file that has grown.
  std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0');
  std::size_t filled = 0;
  for (;;) {
    const ssize_t count = ::read(file.number(), bytes.data() + filled, bytes.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail(FileOperation::read, path, errno);
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
    if (filled > kLargestFile) fail(FileOperation::read, path, EFBIG);
    if (filled == bytes.size()) bytes.resize(2 * filled);
  }
  bytes.resize(filled);
  return bytes;
}

void PosixFileManager::writeAtomically(const Path& path, std::string_view bytes) {
  TemporaryFile temporary(checked(FileOperation::write, path));
  temporary.write(bytes);
  temporary.flush();
  temporary.close();
  temporary.replaceTarget();
  flushFolder(path.parent_path());
}

std::unique_ptr<FileReader> PosixFileManager::open(const Path& path) const {
  return std::make_unique<PosixFileReader>(path);
}

std::optional<FileInfo> PosixFileManager::replaceBeginning(const Path& path, std::string_view bytes,
                                                           const FileReader& rest, std::uint64_t offset,
                                                           const FileInfo& known) {
  const int source = dynamic_cast<const PosixFileReader&>(rest).descriptor();
  TemporaryFile temporary(checked(FileOperation::write, path));
  temporary.write(bytes);
  temporary.writeRest(source, static_cast<off_t>(offset));
  temporary.flush();
  // Only now: whoever changed the file while it was copied has been here before.
  if (info(path) != known || rest.info() != known) return std::nullopt;
  temporary.replaceTarget();
  const FileInfo written = temporary.info();
  flushFolder(path.parent_path());
  return written;
}

void PosixFileManager::append(const Path& path, std::string_view bytes) {
  const Descriptor file = openFile(FileOperation::write, path, O_WRONLY | O_APPEND | O_CREAT);
  ssize_t written = -1;
  do {
    written = ::write(file.number(), bytes.data(), bytes.size());
  } while (written < 0 && errno == EINTR);
  if (written < 0) fail(FileOperation::write, path, errno);
  if (static_cast<std::size_t>(written) != bytes.size()) fail(FileOperation::write, path, ENOSPC);
}

void PosixFileManager::createDirectory(const Path& path) {
  const Path folder = checked(FileOperation::makeDirectory, path).has_filename() ? path : path.parent_path();
  if (isDirectory(folder)) return;
  if (folder.has_relative_path() && folder.has_parent_path()) createDirectory(folder.parent_path());
  if (::mkdir(folder.c_str(), 0700) == 0) return;
  const int error = errno;
  if (error != EEXIST || !isDirectory(folder)) fail(FileOperation::makeDirectory, path, error);
}

void PosixFileManager::remove(const Path& path) {
  struct stat status {};
  if (::lstat(checked(FileOperation::remove, path).c_str(), &status) != 0)
    fail(FileOperation::remove, path, errno);
  std::error_code error;
  std::filesystem::remove_all(path, error);
  if (error) fail(FileOperation::remove, path, error.value());
}

void PosixFileManager::rename(const Path& from, const Path& to) {
  struct stat status {};
  checked(FileOperation::rename, from);
  if (::lstat(checked(FileOperation::rename, to).c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
    fail(FileOperation::rename, from, EEXIST);
  }
  if (::rename(from.c_str(), to.c_str()) != 0) fail(FileOperation::rename, from, errno);
}

std::vector<std::string> PosixFileManager::list(const Path& directory) const {
  std::error_code error;
  std::vector<std::string> names;
  std::filesystem::directory_iterator entry(checked(FileOperation::list, directory), error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    names.push_back(entry->path().filename().native());
  }
  if (error) fail(FileOperation::list, directory, error.value());
  std::sort(names.begin(), names.end());
  return names;
}

namespace {

/// A link goes, not what it leads to.
void removeAt(const Descriptor& folder, const std::string& name) {
  if (::unlinkat(folder.number(), name.c_str(), 0) == 0 || errno != EISDIR) return;
  std::error_code ignored;
  std::filesystem::remove_all("/proc/self/fd/" + std::to_string(folder.number()) + "/" + name, ignored);
}

}  // namespace

void PosixFileManager::removeAbandonedWrites(const Path& directory) {
  // By the open folder, so that neither a link in its place nor one inside leads elsewhere.
  const Descriptor folder = openRetrying(directory, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
  if (!folder.isOpen()) return;
  std::vector<std::string> names;
  try {
    names = list("/proc/self/fd/" + std::to_string(folder.number()));
  } catch (const FileError&) {
    return;
  }
  for (const std::string& name : names) {
    const auto writer = writerOf(name);
    if (writer && isDead(*writer)) removeAt(folder, name);
  }
}

std::optional<FileInfo> PosixFileManager::info(const Path& path) const {
  struct stat status {};
  const bool whole = path.native().find('\0') == std::string::npos;
  if (!whole || ::lstat(path.c_str(), &status) != 0) return std::nullopt;
  return fileInfo(status);
}

}  // namespace velto
