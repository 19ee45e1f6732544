#pragma once

#include "platform/foundation/Date.h"

namespace velto {

/// The only reader of time. State machines take the time as an argument; controllers ask here.
class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual WallTime now() const = 0;
  [[nodiscard]] virtual Uptime uptime() const = 0;
};

}  // namespace velto
