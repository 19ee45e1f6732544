"""What a person gets by copying."""

from Xlib import X
from Xlib.protocol import event, request

from .waiting import wait_until


class Clipboard:
    """Asks whoever owns the clipboard, through a window of its own."""

    def __init__(self, x):
        self.x = x
        self.window = x.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self.selection, self.target, self.place = map(x.intern_atom, ("CLIPBOARD", "UTF8_STRING", "COPIED"))

    def clear(self):
        request.SetSelectionOwner(display=self.x.display, onerror=None, window=X.NONE,
                                  selection=self.selection, time=X.CurrentTime)
        self.x.sync()

    def is_filled(self):
        return self.x.get_selection_owner(self.selection) != X.NONE

    def text(self):
        self.window.convert_selection(self.selection, self.target, self.place, X.CurrentTime)
        self.x.flush()
        wait_until(self._has_come, "the copied text comes")
        found = self.window.get_full_property(self.place, X.AnyPropertyType)
        return found.value.decode() if found else ""

    def _has_come(self):
        pending = [self.x.next_event() for _ in range(self.x.pending_events())]
        return any(isinstance(found, event.SelectionNotify) for found in pending)


def text_of(window, keyboard):
    """All the text that its page shows."""
    clipboard = Clipboard(window.screen.x)
    wait_until(window.has_focus, f"{window} has the keyboard")
    clipboard.clear()
    keyboard.press("Control_L", "a")
    keyboard.press("Control_L", "c")
    wait_until(clipboard.is_filled, "the page's text is copied")
    return clipboard.text()
