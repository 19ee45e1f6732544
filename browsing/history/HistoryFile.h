#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "browsing/history/HistoryFormat.h"
#include "platform/foundation/FileManager.h"

namespace velto {

/// A look at each entry; false ends the walk.
using HistoryVisitor = std::function<bool(const HistoryScanner& scanner)>;

/// Walks through a file in parts, in little memory, as far as the visitor wants. False when it is not as
/// `encodeHistory` writes it, which may turn out after any number of entries. Throws `FileError`.
bool walkHistory(const FileReader& file, HistoryForm form, const HistoryVisitor& visit);

/// Walks to the end. The file that was walked through; nothing when it is not as `encodeHistory` writes it,
/// or changed meanwhile. Throws `FileError`.
std::optional<FileInfo> walkWholeHistory(const FileReader& file, HistoryForm form,
                                         const HistoryVisitor& visit);

/// The last bytes are those of a file with entries. Throws `FileError`.
bool endsAsHistory(const FileReader& file, const FileInfo& info, HistoryForm form);

/// What stands before the part of a file that a new entry leaves as it is.
struct HistoryBeginning {
  std::string bytes;
  std::uint64_t restOffset = 0;
};

/// With the entries, of which there is one at least, before the first one of the file; in its place when that
/// has the URL of the last of them. Nothing when the file has no entry, or does not begin as `encodeHistory`
/// writes it. Throws `FileError`.
std::optional<HistoryBeginning> beginningWith(std::span<const HistoryEntry> entries, const FileReader& file,
                                              HistoryForm form);

}  // namespace velto
