#include "browsing/safari/SafariImportTexts.h"

namespace velto {
namespace {

std::string joined(const std::vector<std::string>& domains) {
  std::string text;
  for (const std::string& domain : domains) text += (text.empty() ? "" : ", ") + domain;
  return text;
}

/// Takes counts as the containers give them.
class Counts {
 public:
  explicit Counts(const LocalizedFormat& format) : format_(format) {}
  std::string operator()(std::size_t count) const { return format_.number(static_cast<std::int64_t>(count)); }

 private:
  const LocalizedFormat& format_;
};

std::string signInsLine(const SafariImportGap& gap, const SafariSiteFilter& filter, const Counts& text) {
  const std::size_t missing = gap.missingCookies.size();
  const std::size_t changed = gap.changedCookies.size();
  const std::string sites = filter.domains.empty() ? "every site" : joined(filter.domains);
  const std::string line =
      "Sign-ins: " + text(missing + changed + gap.cookiesInSync) + " cookies for " + sites;
  if (!gap.hasCookies()) return line + ", all in Velto already.";
  return line + ". " + text(missing) + " missing in Velto, " + text(changed) +
         " changed since the last import.";
}

std::string historyLine(const SafariImportGap& gap, const Counts& text) {
  const std::size_t missing = gap.missingVisits.size();
  const std::string line = "History: " + text(missing + gap.visitsInSync) + " visits, ";
  return line + (missing > 0 ? text(missing) + " not imported yet." : "all imported.");
}

std::string sourceLine(const SafariImportGap& gap, const SafariDataLocation& location,
                       const LocalizedFormat& format) {
  if (location.stagedAt) {
    return "Read from the snapshot `velto import-safari` took at " + format.shortTime(*location.stagedAt) +
           ".";
  }
  return gap.hasSomethingToDo() ? "Read from Safari just now." : "Up to date with Safari.";
}

}  // namespace

std::string importStatusText(const SafariImportGap& gap, const SafariDataLocation& location,
                             const SafariSiteFilter& filter, const LocalizedFormat& format) {
  const Counts counts(format);
  return signInsLine(gap, filter, counts) + "\n" + historyLine(gap, counts) + "\n" +
         sourceLine(gap, location, format);
}

std::string importSummary(std::size_t cookies, std::size_t visits) {
  const std::string c = std::to_string(cookies);
  const std::string v = std::to_string(visits);
  if (cookies > 0 && visits > 0) {
    return "Imported " + c + " sign-in cookies and " + v + " visits from Safari";
  }
  if (cookies > 0) return "Imported " + c + " sign-in cookies from Safari";
  if (visits > 0) return "Imported " + v + " Safari visits";
  return "Already up to date with Safari";
}

}  // namespace velto
