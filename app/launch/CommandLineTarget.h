#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Url.h"

namespace velto {

/// A process argument that asks for something to be opened.
struct CommandLineTarget {
  /// In lower case, however it was typed.
  std::string scheme;
  Url url;
  bool operator==(const CommandLineTarget&) const = default;
};

/// Absent for an option (it begins with "-") and for everything but a URL of a scheme that this program
/// opens.
std::optional<CommandLineTarget> parseCommandLineTarget(std::string_view argument);

}  // namespace velto
