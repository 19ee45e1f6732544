#pragma once

#include <optional>
#include <string>

namespace velto {

/// What imports from Safari, as the launch of the application and its requests use it.
class SafariImport {
 public:
  virtual ~SafariImport() = default;
  /// Called once at the start: removes in the background what an application that was killed left of Safari's
  /// data. A staged copy stays when an import that will use it is about to be shown.
  virtual void removeLeftovers(bool importFollows) = 0;
  /// With the site field set to the text, when there is one.
  virtual void show(const std::optional<std::string>& sites) = 0;
};

}  // namespace velto
