#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/FileManager.h"

namespace velto {

/// What pages are told about the browser, so that sites serve what they serve to the desktop browser with
/// this engine. The version is that of the installed Safari where there is one, else a fixed one.
std::string userAgent(const FileManager& files);

/// The version that a Safari's `Info.plist` tells, if it consists of digits and dots and begins with a digit.
std::string safariVersionString(std::string_view infoPlist);

}  // namespace velto
