#include "app/launch/LaunchQuery.h"

#include <algorithm>

#include "platform/foundation/Text.h"

namespace velto {

std::optional<std::string> LaunchQuery::text(std::string_view key) const {
  const auto item =
      std::find_if(items_.begin(), items_.end(), [&](const QueryItem& i) { return i.name == key; });
  return item == items_.end() ? std::nullopt : item->value;
}

std::optional<std::int64_t> LaunchQuery::integer(std::string_view key) const {
  const auto value = text(key);
  return value ? parseInteger(*value) : std::nullopt;
}

bool LaunchQuery::isTrue(std::string_view key) const {
  const auto value = text(key);
  return value && lowercased(*value) == "true";
}

}  // namespace velto
