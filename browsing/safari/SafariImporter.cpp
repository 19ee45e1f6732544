#include "browsing/safari/SafariImporter.h"

#include <algorithm>
#include <utility>

#include "browsing/history/HistoryManager.h"
#include "browsing/safari/SafariImportTexts.h"
#include "platform/loop/DispatchGroup.h"
#include "platform/web/CookieRules.h"

namespace velto {
namespace {

/// As many cookies as are set in one turn of the loop.
constexpr std::size_t kCookiesInOneTurn = 100;

}  // namespace

struct SafariImporter::Run {
  std::shared_ptr<const SafariImportGap> gap;
  std::size_t cookiesChosen = 0;
  std::size_t visitsChosen = 0;
  std::function<void()> completion;
  DispatchGroup group;
  std::size_t cookiesSet = 0;

  /// The missing ones, and then the changed ones.
  [[nodiscard]] const SafariCookie& cookie(std::size_t place) const {
    const std::size_t missing = gap->missingCookies.size();
    return place < missing ? gap->missingCookies[place] : gap->changedCookies[place - missing];
  }
};

void mergeVisits(HistoryStore& store, const std::vector<HistoryEntry>& visits) {
  std::vector<HistoryEntry> all = store.load();
  all.reserve(all.size() + visits.size());
  for (const HistoryEntry& visit : visits) {
    all.push_back({visit.url, visit.title, importedTime(visit.timestamp)});
  }
  std::stable_sort(all.begin(), all.end(),
                   [](const HistoryEntry& a, const HistoryEntry& b) { return a.timestamp > b.timestamp; });
  try {
    store.save(all);
  } catch (const FileError&) {
    // The next check finds the same visits missing.
  }
}

SafariImporter::SafariImporter(const Platform& platform, SafariDataSource source,
                               std::shared_ptr<HistoryStore> imports, Toasts& toasts)
    : platform_(platform), source_(std::move(source)), imports_(std::move(imports)), toasts_(toasts) {}

void SafariImporter::apply(std::shared_ptr<const SafariImportGap> gap, Choices choices,
                           std::function<void()> completion) {
  const std::size_t cookies = gap->missingCookies.size() + gap->changedCookies.size();
  const std::size_t visits = gap->missingVisits.size();
  const auto run =
      std::make_shared<Run>(Run{std::move(gap), choices.cookies ? cookies : 0, choices.visits ? visits : 0,
                                std::move(completion), DispatchGroup(platform_.mainQueue)});
  run->group.enter();
  setCookies(run, 0);
  if (run->visitsChosen > 0) mergeInBackground(run);
  run->group.notify([self = WeakPtr<SafariImporter>(*this), run] {
    if (self) self->cleanUp(run);
  });
}

void SafariImporter::setCookies(const std::shared_ptr<Run>& run, std::size_t first) {
  const std::size_t end = std::min(first + kCookiesInOneTurn, run->cookiesChosen);
  const auto store = platform_.webEngine.defaultDataStore();
  for (std::size_t i = first; i < end; ++i) {
    const auto cookie = makeHttpCookie(run->cookie(i).httpProperties());
    if (!cookie || !mayBeStored(*cookie)) continue;
    run->group.enter();
    store->cookieStore().setCookie(*cookie, [run] {
      ++run->cookiesSet;
      run->group.leave();
    });
  }
  if (end == run->cookiesChosen) return run->group.leave();
  platform_.mainQueue.async([self = WeakPtr<SafariImporter>(*this), run, end] {
    if (self) self->setCookies(run, end);
  });
}

void SafariImporter::mergeInBackground(const std::shared_ptr<Run>& run) {
  run->group.enter();
  platform_.backgroundQueue.async([run, imports = imports_, &mainQueue = platform_.mainQueue] {
    mergeVisits(*imports, run->gap->missingVisits);
    mainQueue.async([run] { run->group.leave(); });
  });
}

void SafariImporter::cleanUp(const std::shared_ptr<Run>& run) {
  // The gap goes in the background too: it may take long to free.
  platform_.backgroundQueue.async([gap = std::exchange(run->gap, nullptr), source = source_,
                                   self = WeakPtr<SafariImporter>(*this), run,
                                   &mainQueue = platform_.mainQueue] {
    source.removeSnapshot();
    mainQueue.async([self, run] {
      if (self) self->announce(*run);
    });
  });
}

void SafariImporter::announce(const Run& run) {
  platform_.notifications.post(HistoryManager::kDidChange);
  toasts_.show(importSummary(run.cookiesSet, run.visitsChosen));
  if (run.completion) run.completion();
}

}  // namespace velto
