#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "browsing/VisitRecording.h"
#include "browsing/history/HistoryStore.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/loop/Clock.h"
#include "platform/loop/MainQueue.h"

namespace velto {

/// Changes the history in the background, in the order of the calls; visits that came while one was written
/// are written together. For each change, also for one that failed, `kDidChange` is posted on the main thread
/// afterwards. What fails is dropped.
///
/// Main thread only. The queues and the notification center outlive it and the work in the background.
class HistoryManager : public VisitRecording {
 public:
  static constexpr const char* kDidChange = "historyDidChange";

  HistoryManager(std::shared_ptr<HistoryStore> store, const Clock& clock, MainQueue& mainQueue,
                 BackgroundQueue& backgroundQueue, NotificationCenter& notifications);

  /// The page was visited now. Without a title it is called by its host, else by its whole address.
  void record(const Url& url, const std::string& title);
  void recordVisit(const Url& url, const std::string& title) override { record(url, title); }
  void clear();
  /// Returns when everything is written; what a background queue drops at its end is not lost then.
  void finish();
  /// The newest page of the web, with what is still to be written.
  [[nodiscard]] std::optional<Url> newestPage() const;

 private:
  /// A visit, or nothing for no visits any more.
  using Change = std::optional<HistoryEntry>;
  struct State;
  void add(Change change);
  static void carryOutAll(State& state);
  static void carryOut(HistoryStore& store, const std::vector<HistoryEntry>& visits);

  /// Shared with the work in the background, which may outlive this.
  std::shared_ptr<State> state_;
  const Clock& clock_;
  BackgroundQueue& backgroundQueue_;
};

}  // namespace velto
