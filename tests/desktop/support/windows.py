"""What is on the screen: windows, where they are, who has the keyboard, and colours."""

from collections import namedtuple

from PIL import Image
from Xlib import X, Xatom, error
from Xlib.protocol import event

from .waiting import wait_until

# Root coordinates: pixels, from the upper left corner, y downwards.
Frame = namedtuple("Frame", "x y width height")

PROGRAM = "velto"


class Screen:
    def __init__(self, x):
        self.x = x
        self.root = x.screen().root

    def atom(self, name):
        return self.x.intern_atom(name)

    @property
    def size(self):
        now = self.root.get_geometry()
        return now.width, now.height

    def windows(self):
        """The application's windows that are on the screen, without its dialogs and passing messages."""
        return [found for found, owner in self._ours() if owner is None and found.has_kind("NORMAL")]

    def toasts(self):
        """The passing messages."""
        return [found for found, _ in self._ours() if found.has_kind("NOTIFICATION")]

    def alerts(self, program=PROGRAM):
        """A program's dialogs that belong to none of its windows."""
        return [found for found, owner in self._ours(program) if owner is None and found.has_kind("DIALOG")]

    def dialogs_of(self, window):
        return [found for found, owner in self._ours() if owner and owner.id == window.id]

    def is_above(self, upper, lower):
        order = [child.id for child in self.root.query_tree().children]
        return order.index(self._outermost(upper)) > order.index(self._outermost(lower))

    def has_focus(self, window):
        """Whether the keyboard's input goes to it or to something inside it."""
        focus = self.x.get_input_focus().focus
        while not isinstance(focus, int):
            if focus.id == window.id:
                return True
            try:
                focus = focus.query_tree().parent
            except error.XError:
                return False
        return False

    def tell_manager(self, window, message, *values):
        data = (32, [*values, *[0] * (5 - len(values))])
        self.root.send_event(event.ClientMessage(window=window, client_type=self.atom(message), data=data),
                             event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.x.flush()

    def colour(self, x, y):
        """As #rrggbb."""
        pixel = self.root.get_image(x, y, 1, 1, X.ZPixmap, 0xFFFFFFFF).data
        return f"#{pixel[2]:02x}{pixel[1]:02x}{pixel[0]:02x}"

    def picture(self, frame):
        """What of the frame is on the screen, as an image."""
        part = self.visible_part(frame)
        pixels = self.root.get_image(*part, X.ZPixmap, 0xFFFFFFFF).data
        return Image.frombytes("RGB", (part.width, part.height), pixels, "raw", "BGRX")

    def visible_part(self, frame):
        width, height = self.size
        left, top = max(0, frame.x), max(0, frame.y)
        right, bottom = min(width, frame.x + frame.width), min(height, frame.y + frame.height)
        return Frame(left, top, right - left, bottom - top)

    def _ours(self, program=PROGRAM):
        """Each with the window that it belongs to, or None."""
        for found in self._clients():
            try:
                name, now = found.get_wm_class(), found.get_attributes()
                shown = now.map_state == X.IsViewable and not now.override_redirect
                if shown and name and name[0] == program:
                    yield Window(self, found), found.get_wm_transient_for()
            except error.XError:
                continue  # it went away in between

    def _clients(self):
        listed = self.root.get_full_property(self.atom("_NET_CLIENT_LIST"), Xatom.WINDOW)
        if listed is None:  # no window manager has put frames around them
            return self.root.query_tree().children
        return [self.x.create_resource_object("window", each) for each in listed.value]

    def _outermost(self, window):
        found = self.x.create_resource_object("window", window.id)
        while found.query_tree().parent != self.root:
            found = found.query_tree().parent
        return found.id


class Window:
    """A window of any program."""

    def __init__(self, screen, handle):
        self.screen = screen
        self.handle = handle
        self.id = handle.id

    def __eq__(self, other):
        return isinstance(other, Window) and self.id == other.id

    def __hash__(self):
        return hash(self.id)

    def __repr__(self):
        try:
            return f"<window {self.id:#x} {self.frame()}>"
        except error.XError:
            return f"<window {self.id:#x}, gone>"

    def is_open(self):
        try:
            return self.handle.get_attributes().map_state == X.IsViewable
        except error.XError:
            return False

    def frame(self):
        """Of the window itself, without any border that the window manager drew around it."""
        size = self.handle.get_geometry()
        at = self.screen.root.translate_coords(self.handle, 0, 0)
        return Frame(at.x, at.y, size.width, size.height)

    def centre(self):
        """Of that part of it that is on the screen."""
        part = self.screen.visible_part(self.frame())
        return part.x + part.width // 2, part.y + part.height // 2

    def title(self):
        name = self.handle.get_full_property(self.screen.atom("_NET_WM_NAME"), X.AnyPropertyType)
        return name.value.decode() if name else ""

    def states(self):
        found = self.handle.get_full_property(self.screen.atom("_NET_WM_STATE"), Xatom.ATOM)
        return {self.screen.x.get_atom_name(atom) for atom in (found.value if found else [])}

    def has_kind(self, kind):
        try:
            found = self.handle.get_full_property(self.screen.atom("_NET_WM_WINDOW_TYPE"), Xatom.ATOM)
            return found is not None and self.screen.atom(f"_NET_WM_WINDOW_TYPE_{kind}") in found.value
        except error.XError:
            return False  # it went away in between

    def is_on_all_desktops(self):
        found = self.handle.get_full_property(self.screen.atom("_NET_WM_DESKTOP"), Xatom.CARDINAL)
        return found is not None and found.value[0] == 0xFFFFFFFF

    def has_focus(self):
        return self.screen.has_focus(self)

    def activate(self):
        """As a task bar does it on a person's click."""
        self.screen.tell_manager(self.handle, "_NET_ACTIVE_WINDOW", 2, X.CurrentTime)
        wait_until(self.has_focus, f"{self} has the keyboard")

    def ask_to_close(self):
        """As the close button of a title bar or a task bar does it."""
        self.screen.tell_manager(self.handle, "_NET_CLOSE_WINDOW", X.CurrentTime, 2)

    def close(self, patience=20):
        self.ask_to_close()
        self.wait_until_gone(patience)

    def wait_until_gone(self, patience=20):
        wait_until(lambda: not self.is_open(), f"{self} closes", patience)

    def colour(self, x=None, y=None):
        """At a point inside it, or in its middle."""
        if x is None:
            return self.screen.colour(*self.centre())
        frame = self.frame()
        return self.screen.colour(frame.x + x, frame.y + y)

    def shows(self, colour):
        try:
            return self.colour() == colour
        except error.XError:
            return False

    def wait_until_shows(self, colour):
        wait_until(lambda: self.shows(colour), lambda: f"{self} shows {colour}")

    def wait_for_frame(self, *expected):
        wait_until(lambda: self.frame() == expected, lambda: f"{self} has the frame {expected}")

    def picture(self):
        return self.screen.picture(self.frame())

    def middle_of(self, colour, at_least=100):
        """Of what has that colour, (red, green, blue), in root coordinates; None when it is too little."""
        picture = self.picture()
        pixels = picture.load()
        found = [(x, y) for x in range(0, picture.width, 2) for y in range(0, picture.height, 2)
                 if pixels[x, y] == colour]
        if len(found) < at_least:
            return None
        frame = self.frame()
        x, y = (sum(values) // len(found) for values in zip(*found))
        return frame.x + x, frame.y + y
