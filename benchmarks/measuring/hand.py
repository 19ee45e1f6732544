"""A hand that moves faster than any real one."""

import time

from Xlib import X, display
from Xlib.ext import xtest

from .desk import NotMeasured

MIDDLE = 300  # where a window is about in the middle of the screen
PATIENCE = 10  # seconds
EDGE = 5  # points from the window's upper edge: there a press takes hold of the window


class Hand:
    def __init__(self):
        self._display = display.Display()
        self._root = self._display.screen().root

    def rest_at(self, window, x, y):
        left, top = self._place(window)
        self._move(left + x, top + y)
        self._display.sync()

    def drag(self, window, moves):
        """Drags the window by its upper edge with that many moves, as fast as the X server takes them. Gives the
        milliseconds from the last one until the window stands where the pointer left it.
        """
        left, top = self._place(window)
        towards = 1 if left < MIDDLE else -1  # however often it is dragged, it stays on the screen
        start_x, start_y = left + 200, top + EDGE
        self._move(start_x, start_y)
        xtest.fake_input(self._display, X.ButtonPress, 1)
        self._display.sync()
        for step in range(1, moves + 1):
            dx, dy = towards * (step % 300), step % 200
            self._move(start_x + dx, start_y + dy)
        self._display.sync()
        moved = time.monotonic()
        try:
            while self._place(window) != (left + dx, top + dy):
                if time.monotonic() - moved > PATIENCE:
                    raise NotMeasured("the window did not follow the pointer")
                time.sleep(0.0005)
            return (time.monotonic() - moved) * 1000
        finally:
            xtest.fake_input(self._display, X.ButtonRelease, 1)
            self._display.sync()

    def _move(self, x, y):
        xtest.fake_input(self._display, X.MotionNotify, x=x, y=y)

    def _place(self, window):
        at = self._root.translate_coords(self._display.create_resource_object("window", window), 0, 0)
        return at.x, at.y
