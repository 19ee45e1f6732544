#include "layouts/SessionStore.h"

#include <utility>

namespace velto {

SessionStore::SessionStore(FileManager& files, std::filesystem::path applicationSupportDirectory)
    : files_(files), directory_(std::move(applicationSupportDirectory)) {}

std::optional<VeltoSession> SessionStore::load() const {
  const auto bytes = files_.readIfPossible(file());
  return bytes ? decodeSession(*bytes) : std::nullopt;
}

void SessionStore::write(std::string_view encoded) {
  files_.createDirectory(directory_);
  files_.writeAtomically(file(), encoded);
}

}  // namespace velto
