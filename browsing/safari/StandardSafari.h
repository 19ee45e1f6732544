#pragma once

#include <memory>

#include "browsing/safari/SafariImportAlert.h"

namespace velto {

/// What deals with Safari's data in the application, put together. The toasts outlive it.
class StandardSafari {
 public:
  StandardSafari(const Platform& platform, Toasts& toasts)
      : imports_(std::make_shared<HistoryStore>(platform.files,
                                                platform.environment.applicationSupportDirectory,
                                                HistoryStore::kSafariImportsFileName, false)),
        import_(platform, SafariDataSource::standard(platform.environment, platform.files, platform.clock),
                imports_, toasts) {}

  [[nodiscard]] SafariImport& safariImport() { return import_; }

 private:
  std::shared_ptr<HistoryStore> imports_;
  SafariImportAlert import_;
};

}  // namespace velto
