#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "layouts/LayoutURLCommand.h"

namespace velto {
namespace {

using Command = std::optional<LayoutURLCommand>;

LayoutAddress slug(std::string value) { return {LayoutAddress::Kind::slug, std::move(value)}; }
LayoutAddress name(std::string value) { return {LayoutAddress::Kind::name, std::move(value)}; }

TEST(LayoutURLCommandTests, ReadsQueries) {
  const std::vector<std::pair<std::string, Command>> cases = {
      {"", std::nullopt},
      {"action", std::nullopt},
      {"action=", std::nullopt},
      {"action=frobnicate", std::nullopt},
      {"action=frobnicate&slug=a", std::nullopt},
      {"ACTION=show", std::nullopt},
      {"action=show", ShowLayouts{}},
      {"action=%20List%0A", ShowLayouts{}},
      {"action=show&action=save&name=x", ShowLayouts{}},
      {"action&action=show", std::nullopt},

      {"action=open", std::nullopt},
      {"action=open&slug=%20&name=", std::nullopt},
      {"action=open&slug=a", OpenLayout{slug("a")}},
      {"action=OPEN&slug=Morning", OpenLayout{slug("Morning")}},
      {"action=open&slug=&name=X%20Y", OpenLayout{name("X Y")}},
      {"action=open&slug&slug=b&name=X", OpenLayout{name("X")}},
      {"action=open&name=X&slug=a", OpenLayout{slug("a")}},
      {"action=open&slug=a&slug=b", OpenLayout{slug("a")}},
      {"action=open&name=%20%C3%9C%2Bx+%0D%0A", OpenLayout{name("Ü+x+")}},
      {"action=open&slug=a&copy=TRUE", OpenLayout{slug("a"), true, false}},
      {"action=open&slug=a&copy=1&exact=%20true%20", OpenLayout{slug("a"), false, true}},
      {"action=open&slug=a&copy=true&exact=true", OpenLayout{slug("a"), true, true}},
      {"action=open&slug=a&copy=false&copy=true", OpenLayout{slug("a")}},

      {"action=save", std::nullopt},
      {"action=save&slug=a", std::nullopt},
      {"action=save&name=%20%20", std::nullopt},
      {"action=save&name=%FF", std::nullopt},
      {"action=save&name=%20Morning%20dashboards%20", SaveLayout{"Morning dashboards"}},

      {"action=rename&slug=a", std::nullopt},
      {"action=rename&to=b", std::nullopt},
      {"action=rename&slug=a&to=%09", std::nullopt},
      {"action=rename&slug=a&to=%20New%20name", RenameLayout{slug("a"), "New name"}},
      {"action=rename&name=a&to=b", RenameLayout{name("a"), "b"}},
  };
  for (const auto& [query, expected] : cases) {
    EXPECT_EQ(parseLayoutURLCommand(Url::parse("velto://layout?" + query).value()), expected) << query;
  }
  EXPECT_EQ(parseLayoutURLCommand(Url::parse("velto://layout").value()), std::nullopt);
}

}  // namespace
}  // namespace velto
