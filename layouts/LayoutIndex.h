#pragma once

#include <string>
#include <vector>

#include "layouts/Layout.h"

namespace velto {

/// The list of all layouts for readers outside the program, such as the `velto` command: one line for each,
/// by name, with these fields between tabs: id, name, short name, number of windows, time of the last update
/// in seconds since 1970, names of the displays with ", " between them. A tab or line end inside a field is a
/// blank.
std::string layoutIndex(const std::vector<Layout>& layouts);

}  // namespace velto
