#pragma once

#include <memory>

#include "browsing/safari/SafariImportAlert.h"

namespace velto {

/// What deals with Safari's data in the application, put together. The toasts outlive it.
class StandardSafari {
 public:
  /// Visits are brought over to `imports`.
  StandardSafari(const Platform& platform, const std::shared_ptr<HistoryStore>& imports, Toasts& toasts)
      : import_(platform, SafariDataSource::standard(platform.environment, platform.files, platform.clock),
                imports, toasts) {}

  [[nodiscard]] SafariImport& safariImport() { return import_; }

 private:
  SafariImportAlert import_;
};

}  // namespace velto
