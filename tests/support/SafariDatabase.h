#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include <sqlite3.h>

namespace velto {

/// A database that SQLite itself writes. It stays open, so that its log is not folded into it before the end.
class SafariDatabase {
 public:
  /// The two tables as far as they matter, as Safari makes them.
  static constexpr const char* kSchema =
      "CREATE TABLE history_items (id INTEGER PRIMARY KEY AUTOINCREMENT, url TEXT NOT NULL UNIQUE,"
      " domain_expansion TEXT NULL, visit_count INTEGER NOT NULL DEFAULT 0);"
      "CREATE TABLE history_visits (id INTEGER PRIMARY KEY AUTOINCREMENT,"
      " history_item INTEGER NOT NULL REFERENCES history_items(id) ON DELETE CASCADE,"
      " visit_time REAL NOT NULL, title TEXT NULL, load_successful BOOLEAN NOT NULL DEFAULT 1,"
      " redirect_source INTEGER NULL UNIQUE, redirect_destination INTEGER NULL UNIQUE);"
      "CREATE INDEX history_visits__last_visit ON history_visits (history_item, visit_time DESC);";

  explicit SafariDatabase(const std::filesystem::path& path, const std::string& schema = kSchema) {
    if (sqlite3_open(path.c_str(), &handle_) != SQLITE_OK) throw std::runtime_error("no database");
    run("PRAGMA synchronous = OFF");
    run(schema);
  }
  SafariDatabase(const SafariDatabase&) = delete;
  SafariDatabase& operator=(const SafariDatabase&) = delete;
  ~SafariDatabase() { sqlite3_close(handle_); }

  void run(const std::string& statements) {
    if (sqlite3_exec(handle_, statements.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK) return;
    throw std::runtime_error(sqlite3_errmsg(handle_));
  }

 private:
  sqlite3* handle_ = nullptr;
};

}  // namespace velto
