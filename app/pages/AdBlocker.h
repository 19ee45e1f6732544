#pragma once

#include "platform/foundation/UserDefaults.h"
#include "platform/ui/Application.h"

namespace velto {

/// Whether player pages are to keep advertising away. False until it is switched on.
bool isAdBlockerEnabled(const UserDefaults& defaults);

/// The switch for it, as the person finds it in the menu.
class AdBlocker {
 public:
  AdBlocker(const Application& application, UserDefaults& defaults)
      : application_(application), defaults_(defaults) {}

  [[nodiscard]] bool isEnabled() const { return isAdBlockerEnabled(defaults_); }
  /// Turns it over and tells every open page; those that know of no such thing are left alone.
  void toggle();

 private:
  const Application& application_;
  UserDefaults& defaults_;
};

}  // namespace velto
