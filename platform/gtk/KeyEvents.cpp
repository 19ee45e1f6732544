#include "platform/gtk/KeyEvents.h"

#include <array>
#include <memory>
#include <utility>

#include "platform/gtk/GObject.h"

namespace velto {

namespace {

constexpr std::array<std::pair<guint, Key>, 11> kNamed = {{
    {GDK_KEY_Escape, Key::escape},
    {GDK_KEY_Return, Key::returnKey},
    {GDK_KEY_KP_Enter, Key::returnKey},
    {GDK_KEY_ISO_Enter, Key::returnKey},
    {GDK_KEY_Tab, Key::tab},
    {GDK_KEY_ISO_Left_Tab, Key::tab},
    {GDK_KEY_BackSpace, Key::backspace},
    {GDK_KEY_Left, Key::left},
    {GDK_KEY_Right, Key::right},
    {GDK_KEY_Up, Key::up},
    {GDK_KEY_Down, Key::down},
}};

bool isAscii(guint keyval) { return keyval > ' ' && keyval <= '~'; }

/// What the key types without shift in the first of the keyboard's layouts that is Latin there.
guint latinKeyval(const GdkEventKey& event) {
  GdkKeymapKey* places = nullptr;
  guint* keyvals = nullptr;
  int count = 0;
  GdkKeymap* const keymap = gdk_keymap_get_for_display(gdk_window_get_display(event.window));
  gdk_keymap_get_entries_for_keycode(keymap, event.hardware_keycode, &places, &keyvals, &count);
  const std::unique_ptr<GdkKeymapKey, GFree> freePlaces(places);
  const std::unique_ptr<guint, GFree> freeKeyvals(keyvals);
  for (int i = 0; i < count; ++i) {
    if (places[i].level == 0 && isAscii(keyvals[i])) return keyvals[i];
  }
  return event.keyval;
}

std::string typedText(guint keyval) {
  const gunichar character = gdk_keyval_to_unicode(gdk_keyval_to_lower(keyval));
  if (character == 0 || g_unichar_iscntrl(character) != FALSE) return {};
  std::array<char, 6> utf8{};
  const int length = g_unichar_to_utf8(g_unichar_tolower(character), utf8.data());
  return {utf8.data(), static_cast<std::size_t>(length)};
}

}  // namespace

Modifiers modifiersOf(guint state) {
  return {.shift = (state & GDK_SHIFT_MASK) != 0,
          .control = (state & GDK_CONTROL_MASK) != 0,
          .option = (state & GDK_MOD1_MASK) != 0,
          .command = (state & (GDK_SUPER_MASK | GDK_MOD4_MASK)) != 0};
}

KeyEvent keyEventOf(const GdkEventKey& event) {
  KeyEvent key;
  key.modifiers = modifiersOf(event.state);
  for (const auto& [keyval, named] : kNamed) {
    if (keyval != event.keyval) continue;
    key.key = named;
    return key;
  }
  const bool shortcut = key.modifiers.control || key.modifiers.option || key.modifiers.command;
  key.characters = typedText(shortcut && !isAscii(event.keyval) ? latinKeyval(event) : event.keyval);
  return key;
}

}  // namespace velto
