#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velto {

/// A question which files the person means.
struct OpenPanel {
  bool allowsMultipleSelection = false;
  /// Folders can be chosen, and nothing else can.
  bool choosesDirectories = false;
  /// MIME types that are shown at first, with "image/*" as a kind of its own; empty for all files.
  std::vector<std::string> mimeTypes;
};

/// What was chosen; absent when the person cancelled.
using OpenPanelCompletion = std::function<void(std::optional<std::vector<std::filesystem::path>>)>;

}  // namespace velto
