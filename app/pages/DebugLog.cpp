#include "app/pages/DebugLog.h"

#include <algorithm>
#include <string>

namespace velto {

namespace {

/// Pages choose part of what is logged, so each message and all of them together have an end.
constexpr std::size_t kLongestMessage = 8192;
constexpr std::size_t kMostPerRun = 32U << 20U;

/// One line, whatever the message contains.
std::string lineOf(std::string_view message) {
  std::string line(message.substr(0, kLongestMessage));
  std::replace_if(
      line.begin(), line.end(),
      [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7F;
      },
      ' ');
  return line + "\n";
}

}  // namespace

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
  if (!file_ || written_ >= kMostPerRun) return;
  const std::string line = formatLogDate(clock_.now()) + ": [Nav] " + lineOf(message);
  written_ += line.size();
  try {
    files_.append(*file_, line);
  } catch (const FileError&) {
    // The log never reports.
  }
}

}  // namespace velto
