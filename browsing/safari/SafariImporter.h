#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "app/windows/Toasts.h"
#include "browsing/history/HistoryStore.h"
#include "browsing/safari/SafariDataSource.h"
#include "browsing/safari/SafariImportGap.h"
#include "platform/Platform.h"
#include "platform/foundation/WeakPtr.h"

namespace velto {

/// Adds the visits to the file, which is left as it was when it cannot be written. For any thread.
void mergeVisits(HistoryStore& store, const std::vector<HistoryEntry>& visits);

/// Brings over what a gap holds: cookies into the store of all ordinary windows, visits into the file of
/// imported history. Nothing is ever deleted, and nothing is written to Safari. Main thread only; it never
/// blocks, however large the gap is.
class SafariImporter : public Weakable {
 public:
  struct Choices {
    bool cookies = true;
    bool visits = true;
  };

  /// The toasts outlive it.
  SafariImporter(const Platform& platform, SafariDataSource source, std::shared_ptr<HistoryStore> imports,
                 Toasts& toasts);

  /// At the end the staged copy is removed, the history announced as changed, and a toast tells what was
  /// imported; then the completion is called.
  void apply(std::shared_ptr<const SafariImportGap> gap, Choices choices, std::function<void()> completion);

 private:
  struct Run;
  void setCookies(const std::shared_ptr<Run>& run, std::size_t first);
  void mergeInBackground(const std::shared_ptr<Run>& run);
  void cleanUp(const std::shared_ptr<Run>& run);
  void announce(const Run& run);

  Platform platform_;
  SafariDataSource source_;
  std::shared_ptr<HistoryStore> imports_;
  Toasts& toasts_;
};

}  // namespace velto
