#include "layouts/LayoutURLCommand.h"

#include <string_view>

#include "app/launch/LaunchQuery.h"
#include "platform/foundation/Text.h"

namespace velto {
namespace {

/// The keys of a launch URL, without the blanks around their values.
class TrimmedQuery {
 public:
  explicit TrimmedQuery(const Url& url) : query_(url) {}

  [[nodiscard]] std::string value(std::string_view key) const {
    const auto text = query_.text(key);
    return text ? std::string(trimWhitespaceAndNewlines(*text)) : std::string();
  }

  [[nodiscard]] bool flag(std::string_view key) const { return lowercased(value(key)) == "true"; }

  [[nodiscard]] std::optional<LayoutAddress> address() const {
    if (auto slug = value("slug"); !slug.empty()) return LayoutAddress{LayoutAddress::Kind::slug, slug};
    if (auto name = value("name"); !name.empty()) return LayoutAddress{LayoutAddress::Kind::name, name};
    return std::nullopt;
  }

 private:
  LaunchQuery query_;
};

}  // namespace

std::optional<LayoutURLCommand> parseLayoutURLCommand(const Url& url) {
  const TrimmedQuery query(url);
  const std::string action = lowercased(query.value("action"));
  if (action == "show" || action == "list") return ShowLayouts{};
  if (action == "save") {
    auto name = query.value("name");
    return name.empty() ? std::nullopt : std::optional<LayoutURLCommand>(SaveLayout{name});
  }
  const auto address = query.address();
  if (!address) return std::nullopt;
  if (action == "open") return OpenLayout{*address, query.flag("copy"), query.flag("exact")};
  if (action != "rename") return std::nullopt;
  auto to = query.value("to");
  return to.empty() ? std::nullopt : std::optional<LayoutURLCommand>(RenameLayout{*address, to});
}

}  // namespace velto
