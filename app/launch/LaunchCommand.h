#pragma once

#include <optional>
#include <string>
#include <variant>

#include "app/launch/LaunchRequest.h"

namespace velto {

/// Saving, listing or opening layouts; the URL is read where layouts are known.
struct LayoutCommand {
  Url url;
  bool operator==(const LayoutCommand&) const = default;
};

/// The history page, for one site when a domain is given.
struct ShowHistory {
  std::optional<std::string> domain = {};
  bool operator==(const ShowHistory&) const = default;
};

/// The import window with its site field filled in, or a sign-in sync, which takes no sites.
struct ImportSafari {
  bool sync = false;
  std::optional<std::string> sites = {};
  bool operator==(const ImportSafari&) const = default;
};

/// A page in a window.
struct PopOut {
  ParsedLaunch launch;
  bool operator==(const PopOut&) const = default;
};

/// What one launch URL asks for.
using LaunchCommand = std::variant<LayoutCommand, ShowHistory, ImportSafari, PopOut>;

/// Reads a launch URL; its scheme is exactly "velto" or the older "hovrel", in lower case. Absent when the
/// URL is none or names no page: such a URL is dropped without a word.
std::optional<LaunchCommand> parseLaunchUrl(const Url& url, const LocalDomainPorts& ports);

}  // namespace velto
