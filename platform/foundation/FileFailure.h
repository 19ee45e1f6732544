#pragma once

#include <filesystem>
#include <string_view>

#include "platform/foundation/FileManager.h"

namespace velto {

enum class FileOperation { read, write, makeDirectory, remove, rename, list };

/// The error in words for the person: "“Session.json” could not be written: no space left on the disk."
/// `detail` is told when the kind says too little.
FileError fileFailure(FileError::Kind kind, FileOperation operation, const std::filesystem::path& path,
                      std::string_view detail = {});

}  // namespace velto
