"""Windows of other programs, which the tests play themselves."""

from Xlib import X, Xatom, Xutil, display

from .waiting import wait_until
from .windows import Frame, Screen, Window


class Neighbour(Window):
    """An ordinary window on a connection of its own, which notes whether it lost the keyboard."""

    def __init__(self, desktop, frame=Frame(100, 100, 300, 200), colour=0x808080):
        self.connection = display.Display(desktop.name)
        screen = Screen(self.connection)
        handle = screen.root.create_window(
            *frame, 0, X.CopyFromParent, X.InputOutput, X.CopyFromParent, background_pixel=colour,
            event_mask=X.FocusChangeMask | X.KeyPressMask)
        handle.set_wm_class("neighbour", "Neighbour")
        handle.set_wm_normal_hints(flags=Xutil.USPosition | Xutil.USSize)
        handle.set_wm_hints(flags=Xutil.InputHint, input=True)
        super().__init__(screen, handle)
        self.prepare()
        handle.map()
        wait_until(self.is_open, "the neighbour's window is there")

    def prepare(self):
        """Before it is mapped."""

    def forget_events(self):
        self.connection.sync()
        while self.connection.pending_events():
            self.connection.next_event()

    def events(self, kind):
        """Those of one kind since the last call, the others are forgotten."""
        self.connection.sync()
        pending = [self.connection.next_event() for _ in range(self.connection.pending_events())]
        return [found for found in pending if found.type == kind]

    def remove(self):
        self.connection.close()


class Dock(Neighbour):
    """A panel along the upper edge, which takes its height and some room at the left away from windows."""

    def __init__(self, desktop, top=32, left=0):
        self.top, self.left = top, left
        super().__init__(desktop, Frame(0, 0, desktop.screen.size[0], top))
        wait_until(lambda: self._work_area(desktop.screen) == (left, top), "the panel takes its room")

    def prepare(self):
        set_property = self.handle.change_property
        atom = self.screen.atom
        set_property(atom("_NET_WM_WINDOW_TYPE"), Xatom.ATOM, 32, [atom("_NET_WM_WINDOW_TYPE_DOCK")])
        set_property(atom("_NET_WM_STRUT"), Xatom.CARDINAL, 32, [self.left, 0, self.top, 0])

    @staticmethod
    def _work_area(screen):
        area = screen.root.get_full_property(screen.atom("_NET_WORKAREA"), Xatom.CARDINAL)
        return area and tuple(area.value[:2])
