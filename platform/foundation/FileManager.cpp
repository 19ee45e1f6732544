#include "platform/foundation/FileManager.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/FileFailure.h"

namespace velto {
namespace {

/// What a file held when it was opened.
class ReadFile final : public FileReader {
 public:
  ReadFile(std::string bytes, const FileInfo& info) : bytes_(std::move(bytes)), info_(info) {}

  [[nodiscard]] std::size_t read(std::uint64_t offset, std::span<char> buffer) const override {
    if (offset >= bytes_.size()) return 0;
    return bytes_.copy(buffer.data(), buffer.size(), static_cast<std::size_t>(offset));
  }
  [[nodiscard]] FileInfo info() const override { return info_; }

 private:
  std::string bytes_;
  FileInfo info_;
};

std::string readFrom(const FileReader& file, std::uint64_t offset, std::uint64_t size) {
  std::string bytes(static_cast<std::size_t>(size > offset ? size - offset : 0), '\0');
  bytes.resize(file.read(offset, bytes));
  return bytes;
}

void appendInPieces(FileManager& files, const FileReader& file, const FileManager::Path& path) {
  constexpr std::uint64_t kPiece = 1U << 20U;
  const std::uint64_t size = file.info().size;
  files.append(path, {});
  for (std::uint64_t offset = 0; offset < size; offset += kPiece) {
    files.append(path, readFrom(file, offset, std::min(size, offset + kPiece)));
  }
}

}  // namespace

std::unique_ptr<FileReader> FileManager::open(const Path& path) const {
  std::string bytes = read(path);
  const auto found = info(path);
  if (!found) throw fileFailure(FileError::Kind::notFound, FileOperation::read, path);
  return std::make_unique<ReadFile>(std::move(bytes), *found);
}

std::optional<FileInfo> FileManager::replaceBeginning(const Path& path, std::string_view bytes,
                                                      const FileReader& rest, std::uint64_t offset,
                                                      const FileInfo& known) {
  if (known.type != FileInfo::Type::file || info(path) != known) return std::nullopt;
  writeAtomically(path, std::string(bytes) + readFrom(rest, offset, known.size));
  return info(path);
}

void FileManager::copy(const Path& from, const Path& to) {
  constexpr std::uint64_t kLargestCopy = std::uint64_t{4} << 30U;
  const std::unique_ptr<FileReader> file = open(from);
  if (file->info().size > kLargestCopy) {
    throw fileFailure(FileError::Kind::other, FileOperation::read, from, "it is too large");
  }
  if (exists(to)) throw fileFailure(FileError::Kind::alreadyExists, FileOperation::write, to);
  try {
    appendInPieces(*this, *file, to);
  } catch (const FileError&) {
    if (exists(to)) remove(to);
    throw;
  }
}

std::optional<std::string> FileManager::readIfPossible(const Path& path) const {
  try {
    return read(path);
  } catch (const FileError&) {
    return std::nullopt;
  }
}

}  // namespace velto
