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

    def press(self, *keys):
        """Keys by their names, held down together: press("Control_L", "w")."""
        codes = [self.x.keysym_to_keycode(XK.string_to_keysym(key)) for key in keys]
        for code in codes:
            xtest.fake_input(self.x, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self.x, X.KeyRelease, code)
        self.x.sync()
