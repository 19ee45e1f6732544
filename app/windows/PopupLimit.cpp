#include "app/windows/PopupLimit.h"

namespace velto {

PopupLimit PopupLimit::ofUnaskedWindow() {
  PopupLimit limit;
  limit.unaskedLeft_ = 0;
  return limit;
}

bool PopupLimit::admit(bool isUserGesture) {
  if (isUserGesture) {
    unaskedLeft_ = kMostUnasked;
    return true;
  }
  if (unaskedLeft_ == 0) return false;
  --unaskedLeft_;
  return true;
}

}  // namespace velto
