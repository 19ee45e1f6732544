#include "browsing/history/HistoryFile.h"

#include <cstddef>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "platform/foundation/Text.h"

namespace velto {
namespace {

using Step = HistoryScanner::Step;

/// A window onto the file that moves on. It grows when an entry does not fit.
class Parts {
 public:
  explicit Parts(const FileReader& file) : file_(file), buffer_(kSize, '\0') {}

  /// The next part, from so many bytes behind the beginning of this one.
  std::string_view next(std::size_t passed) {
    std::memmove(buffer_.data(), buffer_.data() + passed, filled_ - passed);
    filled_ -= passed;
    offset_ += passed;
    if (filled_ == buffer_.size()) buffer_.resize(2 * buffer_.size());
    filled_ += file_.read(offset_ + filled_, std::span(buffer_).subspan(filled_));
    return {buffer_.data(), filled_};
  }
  /// Nothing follows this part.
  [[nodiscard]] bool isLast() const {
    char following = 0;
    return filled_ < buffer_.size() || file_.read(offset_ + filled_, std::span(&following, 1)) == 0;
  }

 private:
  static constexpr std::size_t kSize = std::size_t{256} << 10U;

  const FileReader& file_;
  std::string buffer_;
  std::uint64_t offset_ = 0;
  std::size_t filled_ = 0;
};

}  // namespace

bool walkHistory(const FileReader& file, HistoryForm form, const HistoryVisitor& visit) {
  Parts parts(file);
  HistoryScanner scanner(form);
  for (;;) {
    const std::string_view part = parts.next(scanner.position());
    scanner.more(part);
    Step step = Step::cutOff;
    bool goesOn = true;
    while (goesOn && (step = scanner.next()) == Step::entry) goesOn = visit(scanner);
    if (step == Step::foreign || !isValidUtf8(part.substr(0, scanner.position()))) return false;
    if (!goesOn) return true;
    if (step == Step::end) return parts.isLast();
    if (parts.isLast()) return false;
  }
}

std::optional<FileInfo> walkWholeHistory(const FileReader& file, HistoryForm form,
                                         const HistoryVisitor& visit) {
  const FileInfo before = file.info();
  if (!walkHistory(file, form, visit) || file.info() != before) return std::nullopt;
  return before;
}

bool endsAsHistory(const FileReader& file, const FileInfo& info, HistoryForm form) {
  const std::string_view expected = historyEnding(form);
  if (info.size < expected.size()) return false;
  std::string ending(expected.size() + 1, '\0');  // one more, in case that the file has grown
  ending.resize(file.read(info.size - expected.size(), ending));
  return ending == expected;
}

std::optional<HistoryBeginning> beginningWith(std::span<const HistoryEntry> entries, const FileReader& file,
                                              HistoryForm form) {
  std::optional<HistoryBeginning> beginning;
  const bool asWritten = walkHistory(file, form, [&](const HistoryScanner& scanner) {
    const bool replaces = readEntry(scanner.entry()).url == entries.back().url;
    beginning = HistoryBeginning{encodeHistoryBeginning(entries, !replaces, form),
                                 replaces ? scanner.position() : scanner.entryPosition()};
    return false;
  });
  return asWritten ? beginning : std::nullopt;
}

}  // namespace velto
