#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Url.h"

namespace velto {

/// The keys of a launch URL. A key is looked up by its exact name, the first item of that name is the one
/// that counts, and a key without a value counts as absent.
class LaunchQuery {
 public:
  explicit LaunchQuery(const Url& url) : items_(url.queryItems()) {}

  [[nodiscard]] std::optional<std::string> text(std::string_view key) const;
  /// Absent unless the value is a decimal whole number within 64 bits; no range check.
  [[nodiscard]] std::optional<std::int64_t> integer(std::string_view key) const;
  /// Only "true", in any case, is true.
  [[nodiscard]] bool isTrue(std::string_view key) const;

 private:
  std::vector<QueryItem> items_;
};

}  // namespace velto
