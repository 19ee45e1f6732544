#include "app/pages/DebugLog.h"

#include <string>

namespace velto {

DebugLog::DebugLog(FileManager& files, const Clock& clock,
                   const std::optional<std::filesystem::path>& documents)
    : files_(files), clock_(clock) {
  if (documents) file_ = *documents / "urlbar_debug.txt";
}

void DebugLog::begin() {
  if (!file_) return;
  try {
    files_.writeAtomically(
        *file_, "AppDelegate.applicationDidFinishLaunching called at " + formatLogDate(clock_.now()) + "\n");
  } catch (const FileError&) {
    // A log that cannot be written must not keep the program from starting.
  }
}

void DebugLog::log(std::string_view message) {
  if (!file_) return;
  try {
    files_.append(*file_, formatLogDate(clock_.now()) + ": [Nav] " + std::string(message) + "\n");
  } catch (const FileError&) {
    // The log never reports.
  }
}

}  // namespace velto
