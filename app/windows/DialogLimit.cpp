#include "app/windows/DialogLimit.h"

#include <utility>

namespace velto {

DialogLimit::Verdict DialogLimit::asked(Uptime now) {
  if (shown_.admit(now)) {
    said_ = false;
    return Verdict::show;
  }
  return std::exchange(said_, true) ? Verdict::refuse : Verdict::refuseAndSay;
}

}  // namespace velto
