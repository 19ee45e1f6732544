#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "layouts/LayoutCapture.h"

namespace velto {

/// `base`, or with the first number from 2 on that makes it differ from all of `existing`, whatever their
/// case.
std::string uniqueName(const std::string& base, const std::vector<std::string>& existing);

/// What stands in the way of saving a layout under this name, as the person reads it; absent when nothing
/// does. `taken` is empty where a name may be used twice.
std::optional<std::string> saveWarning(std::string_view name, std::size_t windowCount,
                                       const std::vector<std::string>& taken);

/// What the person is told about pages that are files of this computer; absent when there are none.
std::optional<std::string> localFileNotice(const std::vector<WindowSnapshot>& windows);

/// The name, or its beginning with "…" in the place of the last of so many characters.
std::string shortened(const std::string& name, std::size_t longest);

/// "1 window", "2 windows".
std::string countedWindows(std::size_t count);

}  // namespace velto
