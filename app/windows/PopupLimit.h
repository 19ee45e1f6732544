#pragma once

namespace velto {

/// How many windows the page of one window may open that nobody asked for.
class PopupLimit {
 public:
  static constexpr int kMostUnasked = 5;

  /// For a window that was itself opened unasked: it opens none, until the person clicks in it.
  static PopupLimit ofUnaskedWindow();

  /// Whether the page may open a window. One that answers a click always may, and the count starts again.
  bool admit(bool isUserGesture);

 private:
  int unaskedLeft_ = kMostUnasked;
};

}  // namespace velto
