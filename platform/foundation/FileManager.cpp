#include "platform/foundation/FileManager.h"

namespace velto {

std::optional<std::string> FileManager::readIfPossible(const Path& path) const {
  try {
    return read(path);
  } catch (const FileError&) {
    return std::nullopt;
  }
}

}  // namespace velto
