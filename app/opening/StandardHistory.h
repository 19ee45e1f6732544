#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/opening/Services.h"
#include "browsing/history/HistoryManager.h"
#include "browsing/history/HistoryStore.h"
#include "platform/Platform.h"

namespace velto {

/// The history of the application, put together.
class StandardHistory : public History {
 public:
  explicit StandardHistory(const Platform& platform);

  void setOpener(LayoutWindowOpening& opener) override { opener_ = opener; }
  void prepare(UserDefaults& defaults) override { primary_->migrateLegacyDefaults(defaults); }
  void recordVisit(const Url& url, const std::string& title) override { manager_.record(url, title); }
  [[nodiscard]] std::optional<Url> newestWebPage() const override { return manager_.newestPage(); }
  void show(const std::optional<std::string>& domain) override;
  void finishRecording() override { manager_.finish(); }

  [[nodiscard]] HistoryManager& manager() { return manager_; }
  [[nodiscard]] std::shared_ptr<HistoryStore> primary() const { return primary_; }
  [[nodiscard]] std::shared_ptr<HistoryStore> safariImports() const { return safariImports_; }

 private:
  std::shared_ptr<HistoryStore> primary_;
  std::shared_ptr<HistoryStore> safariImports_;
  HistoryManager manager_;
  WeakPtr<LayoutWindowOpening> opener_;
};

}  // namespace velto
