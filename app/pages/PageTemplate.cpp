#include "app/pages/PageTemplate.h"

namespace velto {

std::string fillPageTemplate(std::string_view pageTemplate,
                             const std::map<std::string_view, std::string>& values) {
  constexpr std::string_view kOpen = "{{";
  constexpr std::string_view kClose = "}}";
  std::string page;
  std::string_view rest = pageTemplate;
  for (std::size_t open = rest.find(kOpen); open != std::string_view::npos; open = rest.find(kOpen)) {
    page += rest.substr(0, open);
    rest.remove_prefix(open);
    const std::size_t close = rest.find(kClose);
    const auto value = close == std::string_view::npos
                           ? values.end()
                           : values.find(rest.substr(kOpen.size(), close - kOpen.size()));
    const bool isMark = value != values.end();
    page += isMark ? std::string_view(value->second) : kOpen;
    rest.remove_prefix(isMark ? close + kClose.size() : kOpen.size());
  }
  return page.append(rest);
}

}  // namespace velto
