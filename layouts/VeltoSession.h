#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "layouts/LayoutFormat.h"

namespace velto {

/// The windows that were open, to be opened again at the next start.
struct VeltoSession {
  std::int64_t schemaVersion = Layout::kSchemaVersion;
  WallTime savedAt;
  /// The layout that the windows were last opened from or saved as.
  std::optional<std::string> layoutID;
  std::vector<LayoutDisplay> displays;
  /// Without thumbnails.
  std::vector<LayoutWindow> windows;
  bool operator==(const VeltoSession&) const = default;
};

/// The session in the bytes of its file. Nothing when it is damaged or a later Velto wrote it.
std::optional<VeltoSession> decodeSession(std::string_view bytes);

template <>
struct JsonFields<VeltoSession> {
  static constexpr std::array kFields = {
      jsonField<&VeltoSession::schemaVersion>("schemaVersion"),
      jsonField<&VeltoSession::savedAt>("savedAt"),
      jsonField<&VeltoSession::layoutID>("layoutID"),
      jsonField<&VeltoSession::displays>("displays"),
      jsonField<&VeltoSession::windows>("windows"),
  };
};

}  // namespace velto
