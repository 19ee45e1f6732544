#include "app/windows/PopupLimit.h"

namespace velto {

namespace {

bool take(int& left) {
  if (left == 0) return false;
  --left;
  return true;
}

}  // namespace

PopupLimit PopupLimit::ofUnaskedWindow() {
  PopupLimit limit;
  limit.unaskedLeft_ = 0;
  return limit;
}

PopupLimit::Verdict PopupLimit::admit(bool isUserGesture, std::optional<Uptime> lastGesture) {
  if (lastGesture != lastGesture_) {
    *this = PopupLimit();
    lastGesture_ = lastGesture;
  }
  if (isUserGesture && take(askedLeft_)) return Verdict::asked;
  return take(unaskedLeft_) ? Verdict::unasked : Verdict::refused;
}

}  // namespace velto
