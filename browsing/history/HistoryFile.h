#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "browsing/history/HistoryEntry.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/Url.h"

namespace velto {

/// The entries of a history file, in its order: a JSON array of objects with "url", "title" and "timestamp"
/// (ISO 8601). A file that is missing or has one entry that cannot be read gives none at all.
std::vector<HistoryEntry> readHistoryFile(const FileManager& files, const std::filesystem::path& path);

/// The first entry that is a page of the web (http or https).
std::optional<Url> firstWebPage(const std::vector<HistoryEntry>& entries);

}  // namespace velto
