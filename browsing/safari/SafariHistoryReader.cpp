#include "browsing/safari/SafariHistoryReader.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <sqlite3.h>

#include "platform/foundation/Text.h"
#include "platform/foundation/Url.h"

namespace velto::SafariHistoryReader {
namespace {

using Path = std::filesystem::path;

constexpr const char* kStatement =
    "SELECT i.url, v.title, v.visit_time\n"
    "FROM history_visits v JOIN history_items i ON i.id = v.history_item\n"
    "WHERE v.load_successful = 1 AND v.redirect_destination IS NULL\n"
    "ORDER BY v.visit_time DESC";

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
};
struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

/// The bytes of the database and its log. Only plain files are opened: a pipe would never let go of SQLite.
std::uint64_t checkedSize(const Path& path) {
  std::uint64_t size = 0;
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
    std::error_code error;
    const Path file = path.native() + suffix;
    const auto type = std::filesystem::status(file, error).type();
    const bool isMissing = type == std::filesystem::file_type::not_found;
    if (type != std::filesystem::file_type::regular && !(isMissing && *suffix != '\0')) {
      throw ReadError(ReadError::Kind::cannotOpen, sqlite3_errstr(SQLITE_CANTOPEN));
    }
    const std::uintmax_t bytes = isMissing ? 0 : std::filesystem::file_size(file, error);
    if (!error) size += bytes;
  }
  return size;
}

/// Ends a query that takes more than a database of its size can be worth.
class Budget {
 public:
  explicit Budget(std::uint64_t databaseSize)
      : steps_(1'000'000 + 4 * databaseSize), memory_((std::uint64_t{64} << 20U) + 16 * databaseSize) {}

  void watch(sqlite3* database) {
    memoryAtStart_ = sqlite3_memory_used();
    sqlite3_progress_handler(database, kStepsBetweenLooks, &isSpent, this);
  }
  /// Whether what an entry takes is still in.
  bool spend(const HistoryEntry& entry) {
    taken_ += sizeof(HistoryEntry) + entry.url.size() + entry.title.size();
    return taken_ <= memory_;
  }

 private:
  static constexpr int kStepsBetweenLooks = 100;

  static int isSpent(void* self) {
    Budget& budget = *static_cast<Budget*>(self);
    const std::int64_t used = sqlite3_memory_used() - budget.memoryAtStart_;
    budget.steps_ -= std::min<std::uint64_t>(budget.steps_, kStepsBetweenLooks);
    return budget.steps_ == 0 || used > static_cast<std::int64_t>(budget.memory_) ? 1 : 0;
  }

  std::uint64_t steps_;
  std::uint64_t memory_;
  std::uint64_t taken_ = 0;
  std::int64_t memoryAtStart_ = 0;
};

Database open(const Path& path) {
  sqlite3* handle = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READONLY, nullptr);
  Database database(handle);
  if (result == SQLITE_OK) return database;
  throw ReadError(ReadError::Kind::cannotOpen, handle == nullptr ? "unknown error" : sqlite3_errmsg(handle));
}

void restrict(sqlite3* database, std::uint64_t databaseSize) {
  constexpr std::uint64_t kShortestLimit = 1U << 16U;
  constexpr std::uint64_t kLongestLimit = 64U << 20U;
  sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_limit(database, SQLITE_LIMIT_LENGTH,
                static_cast<int>(std::clamp(databaseSize, kShortestLimit, kLongestLimit)));
  // What is sorted stays in memory, where it is counted, and gets into no file that others might look at.
  sqlite3_exec(database, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr);
}

[[noreturn]] void failQuery(sqlite3* database) {
  throw ReadError(ReadError::Kind::query, sqlite3_errmsg(database));
}

Statement prepare(sqlite3* database, const std::string& text) {
  sqlite3_stmt* handle = nullptr;
  if (sqlite3_prepare_v2(database, text.c_str(), -1, &handle, nullptr) != SQLITE_OK) failQuery(database);
  return Statement(handle);
}

/// Views, virtual tables and generated columns could make a short text into a query without an end, which
/// nothing stops while it is being prepared.
void requirePlainTable(sqlite3* database, const char* name) {
  const int result = sqlite3_table_column_metadata(database, "main", name, nullptr, nullptr, nullptr, nullptr,
                                                   nullptr, nullptr);
  if (result != SQLITE_OK) failQuery(database);
  constexpr int kHiddenColumn = 6;
  const Statement columns = prepare(database, "PRAGMA main.table_xinfo(" + std::string(name) + ")");
  while (sqlite3_step(columns.get()) == SQLITE_ROW) {
    if (sqlite3_column_int(columns.get(), kHiddenColumn) == 0) continue;
    throw ReadError(ReadError::Kind::query, std::string("not a plain table: ") + name);
  }
}

std::string_view text(sqlite3_stmt* row, int column) {
  const auto* const bytes = sqlite3_column_text(row, column);
  return bytes == nullptr ? std::string_view() : reinterpret_cast<const char*>(bytes);
}

std::optional<std::string> hostOf(std::string_view url) {
  const auto parsed = Url::parse(url);
  return parsed ? parsed->host() : std::nullopt;
}

std::optional<HistoryEntry> entry(sqlite3_stmt* row, const SafariSiteFilter& filter) {
  const std::string_view url = text(row, 0);
  if (!url.starts_with("http://") && !url.starts_with("https://")) return std::nullopt;
  const std::string_view title = text(row, 1);
  const bool needsHost = title.empty() || !filter.domains.empty();
  const auto host = needsHost ? hostOf(url) : std::nullopt;
  if (!filter.domains.empty() && !(host && filter.matches(*host))) return std::nullopt;

  HistoryEntry entry{.url = repairUtf8(url), .title = repairUtf8(title), .timestamp = {}};
  if (title.empty()) entry.title = host.value_or(entry.url);
  entry.timestamp = sinceReferenceDate(sqlite3_column_double(row, 2));
  return entry;
}

}  // namespace

std::vector<HistoryEntry> read(const Path& databaseURL, const SafariSiteFilter& filter) {
  const std::uint64_t size = checkedSize(databaseURL);
  const Database database = open(databaseURL);
  restrict(database.get(), size);
  Budget budget(size);
  budget.watch(database.get());
  for (const char* table : {"history_visits", "history_items"}) requirePlainTable(database.get(), table);
  const Statement statement = prepare(database.get(), kStatement);
  std::vector<HistoryEntry> entries;
  while (sqlite3_step(statement.get()) == SQLITE_ROW) {
    auto read = entry(statement.get(), filter);
    if (!read) continue;
    if (!budget.spend(*read)) break;
    entries.push_back(std::move(*read));
  }
  return entries;
}

}  // namespace velto::SafariHistoryReader
