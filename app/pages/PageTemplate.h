#pragma once

#include <map>
#include <string>
#include <string_view>

namespace velto {

/// The template with each mark "{{name}}" replaced by its value. Values are put in as they are, so they are
/// escaped already, and what looks like a mark inside them stays. So does a mark that has no value.
std::string fillPageTemplate(std::string_view pageTemplate,
                             const std::map<std::string_view, std::string>& values);

}  // namespace velto
