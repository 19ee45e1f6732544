#pragma once

#include <string>

#include "platform/foundation/Date.h"
#include "platform/foundation/Geometry.h"

namespace velto {

/// Keys held during an event. `command` is the desktop's Super key, `option` its Alt key.
struct Modifiers {
  bool shift = false;
  bool control = false;
  bool option = false;
  bool command = false;
  bool operator==(const Modifiers&) const = default;
};

/// A pointer event, as one view sees it.
struct MouseEvent {
  /// Outside of every view.
  static constexpr Point kNowhere{-1e6, -1e6};

  /// In the coordinates of the view that receives it.
  Point location;
  /// In global screen coordinates; a drag that moves its own window must use this one.
  Point screenLocation;
  /// 1 primary, 2 middle, 3 secondary; 0 for motion without a button.
  int button = 0;
  int clickCount = 0;
  Modifiers modifiers;
};

enum class Key { character, escape, returnKey, tab, backspace, left, right, up, down };

struct KeyEvent {
  Key key = Key::character;
  /// What the key types, lower-cased and without control characters; empty for the named keys.
  std::string characters;
  Modifiers modifiers;
  Uptime time;
};

enum class Cursor {
  arrow,
  pointingHand,
  iBeam,
  openHand,
  closedHand,
  resizeNorthWestSouthEast,
  resizeNorthEastSouthWest,
  crosshair
};

}  // namespace velto
