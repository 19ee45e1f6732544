#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velto {

/// The normal form of a site or host: lower case, without scheme, path, leading dots and one leading "www.".
/// A port stays.
std::string normalizeSite(std::string_view text);

/// The sites that a piece of work is limited to. No site at all means every site.
struct SafariSiteFilter {
  /// In normal form, in the order given.
  std::vector<std::string> domains;

  /// From a list separated by commas, spaces and line feeds.
  static SafariSiteFilter parse(std::string_view text);
  /// Whether the host is one of the sites or below one of them.
  [[nodiscard]] bool matches(std::string_view host) const;

  bool operator==(const SafariSiteFilter&) const = default;
};

}  // namespace velto
