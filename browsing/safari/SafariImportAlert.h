#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "app/windows/Toasts.h"
#include "browsing/safari/SafariImport.h"
#include "browsing/safari/SafariImporter.h"

namespace velto {

/// The import from Safari as one question: an alert tells what Safari has and what is missing here, and its
/// button imports all of it.
///
/// It asks one question at a time. A request that comes while one is shown takes its place with new numbers;
/// one that comes during an import is carried out after it. Reading and comparing never hold up the main
/// thread.
class SafariImportAlert : public SafariImport, public Weakable {
 public:
  /// The text of the sites, as the person gave it last.
  static constexpr const char* kSiteListKey = "safariImportSiteList";

  /// The toasts outlive it.
  SafariImportAlert(const Platform& platform, const SafariDataSource& source,
                    const std::shared_ptr<HistoryStore>& imports, Toasts& toasts);
  /// A staged copy does not outlive a question that nobody answered.
  ~SafariImportAlert() override;

  void removeLeftovers(bool importFollows) override;
  void show(const std::optional<std::string>& sites) override;

 private:
  /// What was read for a check.
  struct Reading;
  /// What came of it.
  struct Finding;

  void check();
  void haveRead(std::uint64_t check, std::shared_ptr<Reading> reading);
  void compare(std::shared_ptr<Reading> reading, std::vector<HttpCookie> cookies);
  void haveCompared(std::uint64_t check, Finding finding);
  void askForAccess();
  void ask(const Alert& alert);
  void answered(std::size_t button);
  void startImport();
  void becomeFree();
  void endSession();
  /// Frees in the background what may take long.
  template <class Value>
  void discard(Value value);

  Platform platform_;
  SafariDataSource source_;
  std::shared_ptr<HistoryStore> imports_;
  Toasts& toasts_;
  SafariImporter importer_;
  /// No check may begin, as copies are being removed or a gap is being applied.
  bool isBusy_ = false;
  bool isCheckWanted_ = false;
  /// The staged copy is in use.
  bool isInSession_ = false;
  /// Answers to older checks are dropped.
  std::uint64_t newestCheck_ = 0;
  std::optional<SheetId> question_;
  std::shared_ptr<const SafariImportGap> gap_;
};

}  // namespace velto
