#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "app/windows/LayoutScroll.h"
#include "platform/foundation/HttpCookie.h"
#include "platform/foundation/Url.h"
#include "platform/ui/Window.h"
#include "platform/web/DataStore.h"

namespace velto {

/// How a window opens. Absent sizes and places are left to the defaults.
struct WindowOptions {
  std::optional<std::int64_t> width = {};
  std::optional<std::int64_t> height = {};
  std::optional<std::int64_t> x = {};
  std::optional<std::int64_t> y = {};
  bool hide = false;
  std::optional<double> zoom = {};
  bool focusAddress = false;
  /// The window that the new one steps away from.
  const Window* referenceWindow = nullptr;
  std::optional<Screen> targetScreen = {};
  std::optional<LayoutScroll> scroll = {};
  bool incognito = false;
  std::shared_ptr<DataStore> dataStore = {};
  std::vector<HttpCookie> cookies = {};
  bool activate = true;
  bool onTop = false;
  bool noFocus = false;
};

/// Whoever needs a window opened without knowing how it is put together. Held weakly.
class LayoutWindowOpening : public Weakable {
 public:
  virtual ~LayoutWindowOpening() = default;
  virtual void openWindow(const Url& url, const WindowOptions& options) = 0;
};

}  // namespace velto
