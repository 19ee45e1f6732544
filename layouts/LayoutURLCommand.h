#pragma once

#include <optional>
#include <string>
#include <variant>

#include "platform/foundation/Url.h"

namespace velto {

/// A layout as a command names it: by its short word or by its name, trimmed, never empty.
struct LayoutAddress {
  enum class Kind { slug, name };
  Kind kind = Kind::slug;
  std::string value;
  bool operator==(const LayoutAddress&) const = default;
};

struct OpenLayout {
  LayoutAddress address;
  /// A further set of windows beside those that are open.
  bool copy = false;
  /// At the planned place even when the layout is open already. Of no account with `copy`.
  bool exact = false;
  bool operator==(const OpenLayout&) const = default;
};

/// Saves the open windows as a new layout, or over the one that has this name.
struct SaveLayout {
  std::string name;
  bool operator==(const SaveLayout&) const = default;
};

struct RenameLayout {
  LayoutAddress address;
  std::string to;
  bool operator==(const RenameLayout&) const = default;
};

/// Shows the window with all layouts.
struct ShowLayouts {
  bool operator==(const ShowLayouts&) const = default;
};

/// What a `velto://layout?…` URL asks for.
using LayoutURLCommand = std::variant<OpenLayout, SaveLayout, RenameLayout, ShowLayouts>;

/// Reads the query; scheme, host and path are not looked at. Absent when it cannot be understood.
std::optional<LayoutURLCommand> parseLayoutURLCommand(const Url& url);

}  // namespace velto
