#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "browsing/history/HistoryEntry.h"
#include "browsing/safari/SafariSiteFilter.h"

/// The visits in Safari's database.
namespace velto::SafariHistoryReader {

/// Why a database gave nothing, in SQLite's own words; for the log only.
class ReadError : public std::runtime_error {
 public:
  enum class Kind { cannotOpen, query };
  ReadError(Kind kind, const std::string& message) : std::runtime_error(message), kind_(kind) {}
  [[nodiscard]] Kind kind() const { return kind_; }

 private:
  Kind kind_;
};

/// One entry for each visit of a page of the web that the filter lets through, newest first. The database may
/// have its write-ahead log beside it. A row that cannot be read ends the list. Blocks; any thread. Throws
/// `ReadError`.
///
/// Safe for a database of any origin: views in place of the tables are refused, and what takes more steps or
/// memory than a database of its size can be worth ends the list too.
std::vector<HistoryEntry> read(const std::filesystem::path& databaseURL, const SafariSiteFilter& filter);

}  // namespace velto::SafariHistoryReader
