#include "app/pages/UserAgent.h"

#include <algorithm>

#include "platform/foundation/PropertyList.h"

namespace velto {

namespace {

constexpr const char* kFallbackVersion = "17.2";

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::string safariVersionString(std::string_view infoPlist) {
  const auto list = readPropertyList(infoPlist);
  const auto* info = list ? list->as<PropertyList::Dictionary>() : nullptr;
  if (info == nullptr) return kFallbackVersion;
  const auto entry = info->find("CFBundleShortVersionString");
  const auto* version = entry != info->end() ? entry->second.as<std::string>() : nullptr;
  const bool usable =
      version != nullptr && !version->empty() && isDigit(version->front()) &&
      std::all_of(version->begin(), version->end(), [](char c) { return isDigit(c) || c == '.'; });
  return usable ? *version : kFallbackVersion;
}

std::string userAgent(const FileManager& files) {
  const auto infoPlist = files.readIfPossible("/Applications/Safari.app/Contents/Info.plist");
  return "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/" +
         safariVersionString(infoPlist.value_or("")) + " Safari/605.1.15";
}

}  // namespace velto
