#include "browsing/safari/SafariImportAlert.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "browsing/safari/SafariImportTexts.h"
#include "platform/foundation/Text.h"

namespace velto {
namespace {

/// In bytes, as long as the command's longest URL.
constexpr std::size_t kLongestSiteList = 131'072;
/// As many sites as the alert names.
constexpr std::size_t kNamedSites = 12;
/// In bytes, of one of them.
constexpr std::size_t kLongestSite = 80;
constexpr const char* kTitle = "Import from Safari";
constexpr const char* kAccessTitle = "Let Velto read Safari's files";
constexpr const char* kAccessText =
    "Safari's files are not in their place in your home folder.\n\nRun `velto import-safari --from DIR`. DIR "
    "is a home folder of a Mac, on its disk or in a backup, or any folder that holds Cookies.binarycookies "
    "and History.db. Velto reads only Safari's cookies and history there, and nothing leaves this computer.";

/// What else the alert tells must fit on the screen too.
SafariSiteFilter inShort(SafariSiteFilter filter) {
  const std::size_t count = filter.domains.size();
  filter.domains.resize(std::min(count, kNamedSites));
  for (std::string& site : filter.domains) {
    if (site.size() > kLongestSite) site = repairUtf8(site.substr(0, kLongestSite)) + "…";
  }
  if (count > kNamedSites) filter.domains.push_back(std::to_string(count - kNamedSites) + " more");
  return filter;
}

}  // namespace

struct SafariImportAlert::Reading {
  SafariSiteFilter filter;
  /// Absent when Safari's data is out of reach, whatever the cause.
  std::optional<SafariData> data;
  std::vector<HistoryEntry> imported;
};

struct SafariImportAlert::Finding {
  std::shared_ptr<const SafariImportGap> gap;
  std::string statusText;
};

SafariImportAlert::SafariImportAlert(const Platform& platform, const SafariDataSource& source,
                                     const std::shared_ptr<HistoryStore>& imports, Toasts& toasts)
    : platform_(platform),
      source_(source),
      imports_(imports),
      toasts_(toasts),
      importer_(platform, source, imports, toasts) {}

SafariImportAlert::~SafariImportAlert() {
  if (isInSession_) source_.removeSnapshot();
}

void SafariImportAlert::removeLeftovers(bool importFollows) {
  isBusy_ = true;
  platform_.backgroundQueue.async([self = WeakPtr<SafariImportAlert>(*this), source = source_, importFollows,
                                   begun = platform_.clock.now(), &mainQueue = platform_.mainQueue] {
    source.removeAbandonedCopies();
    if (!importFollows) {
      // What the command stages from now on is for a request that is on its way.
      const auto staged = source.fileManager->info(source.snapshotDirectory);
      if (staged && staged->modified < begun) source.removeSnapshot();
    }
    source.removeAbandonedSnapshots();
    mainQueue.async([self] {
      if (self) self->becomeFree();
    });
  });
}

void SafariImportAlert::show(const std::optional<std::string>& sites) {
  if (sites && sites->size() > kLongestSiteList)
    return toasts_.show("That list of sites is too long to import");
  if (sites) platform_.defaults.set(kSiteListKey, *sites);
  if (isBusy_) {
    isCheckWanted_ = true;
  } else {
    check();
  }
}

void SafariImportAlert::check() {
  isCheckWanted_ = false;
  isInSession_ = true;
  const std::uint64_t number = ++newestCheck_;
  if (question_) platform_.application.dismissSheet(*std::exchange(question_, std::nullopt));
  discard(std::exchange(gap_, nullptr));
  const std::string sites = platform_.defaults.string(kSiteListKey).value_or("");
  platform_.defaults.set(kSiteListKey, sites);

  platform_.backgroundQueue.async([self = WeakPtr<SafariImportAlert>(*this), number, sites, source = source_,
                                   imports = imports_, &mainQueue = platform_.mainQueue] {
    auto reading = std::make_shared<Reading>();
    reading->filter = SafariSiteFilter::parse(sites);
    try {
      reading->data = source.load(reading->filter);
    } catch (const std::exception&) {  // all the same to the person: there is nothing to import from
    }
    reading->imported = imports->load();
    mainQueue.async([self, number, reading = std::move(reading)]() mutable {
      if (self) self->haveRead(number, std::move(reading));
    });
  });
}

void SafariImportAlert::haveRead(std::uint64_t check, std::shared_ptr<Reading> reading) {
  if (check != newestCheck_) return discard(std::move(reading));
  if (!reading->data) {
    discard(std::move(reading));
    return askForAccess();
  }
  platform_.webEngine.defaultDataStore()->cookieStore().allCookies(
      [self = WeakPtr<SafariImportAlert>(*this), check,
       reading = std::move(reading)](std::vector<HttpCookie> cookies) mutable {
        if (!self) return;
        if (check != self->newestCheck_) return self->discard(std::move(reading));
        self->compare(std::move(reading), std::move(cookies));
      });
}

void SafariImportAlert::compare(std::shared_ptr<Reading> reading, std::vector<HttpCookie> cookies) {
  platform_.backgroundQueue.async([self = WeakPtr<SafariImportAlert>(*this), check = newestCheck_,
                                   reading = std::move(reading), cookies = std::move(cookies),
                                   now = platform_.clock.now(), &mainQueue = platform_.mainQueue] {
    const SafariData& data = *reading->data;
    Finding finding;
    finding.gap = std::make_shared<SafariImportGap>(
        SafariImportGap::compute(data, reading->filter, valuesByKey(cookies), reading->imported, now));
    finding.statusText =
        importStatusText(*finding.gap, data.location, inShort(reading->filter), LocalizedFormat());
    mainQueue.async([self, check, finding = std::move(finding)]() mutable {
      if (self) self->haveCompared(check, std::move(finding));
    });
  });
}

void SafariImportAlert::haveCompared(std::uint64_t check, Finding finding) {
  if (check != newestCheck_) return discard(std::move(finding));
  gap_ = std::move(finding.gap);
  Alert alert;
  alert.messageText = kTitle;
  alert.informativeText = std::move(finding.statusText);
  alert.buttons = {"OK"};
  if (gap_->hasSomethingToDo()) {
    alert.buttons = {gap_->hasSomethingInSync() ? "Sync the Gap" : "Import", "Cancel"};
  }
  ask(alert);
}

void SafariImportAlert::askForAccess() {
  Alert alert;
  alert.messageText = kAccessTitle;
  alert.informativeText = kAccessText;
  alert.buttons = {"OK"};
  ask(alert);
}

void SafariImportAlert::ask(const Alert& alert) {
  question_ = platform_.application.showAlert(
      alert, nullptr,
      [self = WeakPtr<SafariImportAlert>(*this), check = newestCheck_](const AlertAnswer& answer) {
        if (self && check == self->newestCheck_) self->answered(answer.button);
      });
}

void SafariImportAlert::answered(std::size_t button) {
  question_.reset();
  if (button == 0 && gap_ && gap_->hasSomethingToDo()) {
    startImport();
  } else {
    endSession();
  }
}

void SafariImportAlert::startImport() {
  isBusy_ = true;
  importer_.apply(std::exchange(gap_, nullptr), {}, [self = WeakPtr<SafariImportAlert>(*this)] {
    if (!self) return;
    self->isInSession_ = false;
    self->becomeFree();
  });
}

void SafariImportAlert::becomeFree() {
  isBusy_ = false;
  if (isCheckWanted_) check();
}

void SafariImportAlert::endSession() {
  isBusy_ = true;
  platform_.backgroundQueue.async([self = WeakPtr<SafariImportAlert>(*this),
                                   gap = std::exchange(gap_, nullptr), source = source_,
                                   &mainQueue = platform_.mainQueue] {
    source.removeSnapshot();
    mainQueue.async([self] {
      if (!self) return;
      self->isInSession_ = false;
      self->becomeFree();
    });
  });
}

template <class Value>
void SafariImportAlert::discard(Value value) {
  platform_.backgroundQueue.async([value = std::move(value)] {});
}

}  // namespace velto
