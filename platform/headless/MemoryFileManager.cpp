#include "platform/headless/MemoryFileManager.h"

#include <algorithm>
#include <utility>

namespace velto {
namespace {

using Kind = FileError::Kind;
using Path = std::filesystem::path;

/// One text for one place: without ".", ".." and the trailing slash.
Path normal(const Path& path) {
  const Path normal = path.lexically_normal();
  return normal.has_filename() || !normal.has_relative_path() ? normal : normal.parent_path();
}

bool isBelow(const Path& path, const Path& folder) {
  const auto [end, ignored] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
  return end == folder.end() && path != folder;
}

}  // namespace

MemoryFileManager::MemoryFileManager() { put("/", FileInfo::Type::directory, {}); }

std::string MemoryFileManager::read(const Path& path) const {
  const std::lock_guard lock(mutex_);
  if (isFailing()) throw fileFailure(failure_, FileOperation::read, path);
  const auto node = found(followed(normal(path)));
  if (node == nodes_.end()) {
    const Kind kind = isFile(normal(path).parent_path()) ? Kind::notDirectory : Kind::notFound;
    throw fileFailure(kind, FileOperation::read, path);
  }
  if (node->second.info.type == FileInfo::Type::directory) {
    throw fileFailure(Kind::isDirectory, FileOperation::read, path);
  }
  if (node->second.info.type == FileInfo::Type::symbolicLink) {
    throw fileFailure(Kind::other, FileOperation::read, path, "too many links");
  }
  return node->second.contents;
}

void MemoryFileManager::writeAtomically(const Path& path, std::string_view bytes) {
  const std::lock_guard lock(mutex_);
  if (isFailing()) throw fileFailure(failure_, FileOperation::write, path);
  const Path target = normal(path);
  requireFolder(target, FileOperation::write);
  if (isDirectory(target)) throw fileFailure(Kind::isDirectory, FileOperation::write, path);
  put(target, FileInfo::Type::file, std::string(bytes));
}

void MemoryFileManager::append(const Path& path, std::string_view bytes) {
  const std::lock_guard lock(mutex_);
  if (isFailing()) throw fileFailure(failure_, FileOperation::write, path);
  const Path target = followed(normal(path));
  requireFolder(target, FileOperation::write);
  if (isDirectory(target)) throw fileFailure(Kind::isDirectory, FileOperation::write, path);
  const auto node = nodes_.find(target);
  if (node == nodes_.end()) return put(target, FileInfo::Type::file, std::string(bytes));
  node->second.contents += bytes;
  beginChange();
  touch(target);
}

void MemoryFileManager::createDirectory(const Path& path) {
  const std::lock_guard lock(mutex_);
  if (isFailing()) throw fileFailure(failure_, FileOperation::makeDirectory, path);
  Path folder;
  for (const Path& name : normal(path)) {
    folder /= name;
    if (isDirectory(followed(folder))) continue;
    if (found(folder) != nodes_.end()) {
      const Kind kind = folder == normal(path) ? Kind::alreadyExists : Kind::notDirectory;
      throw fileFailure(kind, FileOperation::makeDirectory, path);
    }
    put(folder, FileInfo::Type::directory, {});
  }
}

void MemoryFileManager::remove(const Path& path) {
  const std::lock_guard lock(mutex_);
  if (isFailing()) throw fileFailure(failure_, FileOperation::remove, path);
  const Path target = normal(path);
  if (nodes_.erase(target) == 0) throw fileFailure(Kind::notFound, FileOperation::remove, path);
  std::erase_if(nodes_, [&](const auto& node) { return isBelow(node.first, target); });
  beginChange();
  touch(target.parent_path());
}

void MemoryFileManager::rename(const Path& from, const Path& to) {
  const std::lock_guard lock(mutex_);
  if (isFailing()) throw fileFailure(failure_, FileOperation::rename, from);
  const Path source = normal(from);
  const Path target = normal(to);
  if (isDirectory(target)) throw fileFailure(Kind::alreadyExists, FileOperation::rename, from);
  if (found(source) == nodes_.end()) throw fileFailure(Kind::notFound, FileOperation::rename, from);
  requireFolder(target, FileOperation::rename);
  if (isDirectory(source) && found(target) != nodes_.end()) {
    throw fileFailure(Kind::notDirectory, FileOperation::rename, from);
  }
  if (isBelow(target, source)) throw fileFailure(Kind::other, FileOperation::rename, from);
  Nodes moved;
  for (const auto& [path, node] : nodes_) {
    if (path == source) moved.emplace(target, node);
    if (isBelow(path, source)) moved.emplace(target / path.lexically_relative(source), node);
  }
  std::erase_if(nodes_,
                [&](const auto& node) { return node.first == source || isBelow(node.first, source); });
  for (auto& [path, node] : moved) nodes_.insert_or_assign(path, std::move(node));
  beginChange();
  touch(source.parent_path());
  touch(target.parent_path());
}

std::vector<std::string> MemoryFileManager::list(const Path& directory) const {
  const std::lock_guard lock(mutex_);
  if (isFailing()) throw fileFailure(failure_, FileOperation::list, directory);
  const Path folder = followed(normal(directory));
  const auto node = found(folder);
  if (node == nodes_.end()) throw fileFailure(Kind::notFound, FileOperation::list, directory);
  if (!isDirectory(folder)) throw fileFailure(Kind::notDirectory, FileOperation::list, directory);
  std::vector<std::string> names;
  for (const auto& [path, ignored] : nodes_) {
    if (path != folder && path.parent_path() == folder) names.push_back(path.filename().native());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<FileInfo> MemoryFileManager::info(const Path& path) const {
  const std::lock_guard lock(mutex_);
  if (isFailing()) return std::nullopt;
  const auto node = found(normal(path));
  return node == nodes_.end() ? std::nullopt : std::optional(node->second.info);
}

void MemoryFileManager::makeLink(const Path& path, const Path& target) {
  const std::lock_guard lock(mutex_);
  put(normal(path), FileInfo::Type::symbolicLink, target.native());
}

void MemoryFileManager::setModified(const Path& path, WallTime time) {
  const std::lock_guard lock(mutex_);
  nodes_.at(normal(path)).info.modified = time;
}

int MemoryFileManager::callCount() const {
  const std::lock_guard lock(mutex_);
  return callCount_;
}

void MemoryFileManager::failCall(int number, FileError::Kind kind) {
  const std::lock_guard lock(mutex_);
  failingCall_ = callCount_ + number;
  failure_ = kind;
}

void MemoryFileManager::failAllCalls(FileError::Kind kind) {
  const std::lock_guard lock(mutex_);
  allFail_ = true;
  failure_ = kind;
}

void MemoryFileManager::stopFailing() {
  const std::lock_guard lock(mutex_);
  allFail_ = false;
  failingCall_ = 0;
}

bool MemoryFileManager::isFailing() const {
  ++callCount_;
  return allFail_ || callCount_ == failingCall_;
}

Path MemoryFileManager::followed(Path path) const {
  constexpr int kMaximumLinks = 40;
  for (int links = 0; links < kMaximumLinks; ++links) {
    const auto node = found(path);
    if (node == nodes_.end() || node->second.info.type != FileInfo::Type::symbolicLink) break;
    path = normal(path.parent_path() / node->second.contents);
  }
  return path;
}

MemoryFileManager::Nodes::const_iterator MemoryFileManager::found(const Path& path) const {
  return nodes_.find(path);
}

bool MemoryFileManager::isDirectory(const Path& path) const {
  const auto node = found(path);
  return node != nodes_.end() && node->second.info.type == FileInfo::Type::directory;
}

bool MemoryFileManager::isFile(const Path& path) const {
  const auto node = found(path);
  return node != nodes_.end() && node->second.info.type == FileInfo::Type::file;
}

void MemoryFileManager::requireFolder(const Path& path, FileOperation operation) const {
  const Path folder = path.parent_path();
  if (isDirectory(folder)) return;
  throw fileFailure(isFile(folder) ? Kind::notDirectory : Kind::notFound, operation, path);
}

void MemoryFileManager::touch(const Path& path) {
  const auto node = nodes_.find(path);
  if (node == nodes_.end()) return;
  node->second.info.size = node->second.contents.size();
  node->second.info.modified = lastChange_;
  node->second.info.changed = lastChange_;
}

void MemoryFileManager::put(const Path& path, FileInfo::Type type, std::string contents) {
  beginChange();
  Node& node = nodes_[path];
  node.info.type = type;
  node.info.device = 1;
  node.info.inode = ++lastInode_;
  node.contents = std::move(contents);
  touch(path);
  touch(path.parent_path());
}

}  // namespace velto
