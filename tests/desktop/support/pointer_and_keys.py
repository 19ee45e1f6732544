"""Real input: the server treats it as if it came from devices."""

from Xlib import X, XK
from Xlib.ext import xtest


class PointerAndKeys:
    def __init__(self, x):
        self.x = x

    def move(self, x, y):
        xtest.fake_input(self.x, X.MotionNotify, x=x, y=y)
        self.x.sync()

    def click(self, x, y, button=1):
        self.move(x, y)
        xtest.fake_input(self.x, X.ButtonPress, button)
        xtest.fake_input(self.x, X.ButtonRelease, button)
        self.x.sync()

    def button(self, down, button=1):
        xtest.fake_input(self.x, X.ButtonPress if down else X.ButtonRelease, button)
        self.x.sync()

    def drag(self, start, *points):
        """With the first button down from the start over all the points."""
        self.move(*start)
        self.button(True)
        for point in points:
            self.move(*point)
        self.button(False)

    def type(self, text):
        """Characters that a key of the keyboard has, alone or with Shift."""
        shift = self.x.keysym_to_keycode(XK.XK_Shift_L)
        for character in text:
            code, level = min(self.x.keysym_to_keycodes(ord(character)), key=lambda key: key[1])
            codes = [shift, code] if level == 1 else [code]
            self._press_codes(codes)

    def press(self, *keys):
        """Keys by their names, held down together: press("Control_L", "w")."""
        self._press_codes([self.x.keysym_to_keycode(XK.string_to_keysym(key)) for key in keys])

    def _press_codes(self, codes):
        for code in codes:
            xtest.fake_input(self.x, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self.x, X.KeyRelease, code)
        self.x.sync()
