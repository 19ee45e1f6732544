#pragma once

#include <cstddef>
#include <string>

#include "browsing/safari/SafariImportGap.h"
#include "platform/foundation/LocalizedFormat.h"

namespace velto {

/// What Safari has and what is missing here, in three lines: sign-ins, history, and where it was read.
std::string importStatusText(const SafariImportGap& gap, const SafariDataLocation& location,
                             const SafariSiteFilter& filter, const LocalizedFormat& format);

/// What an import brought over. Plain numbers; the words are those for several.
std::string importSummary(std::size_t cookies, std::size_t visits);

}  // namespace velto
