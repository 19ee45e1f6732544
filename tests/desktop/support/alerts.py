"""What the application's alerts say."""

import subprocess
import sys
from pathlib import Path

from Xlib import error

from .neighbours import Neighbour
from .waiting import wait_until
from .windows import Frame


def wait_for_alert(application, title, text, *buttons):
    """The alert with just these words and buttons, told by its looks: another dialog says the same."""
    screen = application.desktop.screen
    alert = wait_until(lambda: screen.alerts(), "an alert appears")[0]
    twin = subprocess.Popen([sys.executable, Path(__file__).with_name("message.py"), title, text, *buttons],
                            env=application.environment)
    try:
        reference = wait_until(lambda: screen.alerts("message"), "the dialog to compare with appears")[0]
        compare(application.desktop, alert, reference,
                lambda: f"the alert says {title!r}, {text!r}, {buttons}")
    finally:
        twin.kill()
        twin.wait()
    alert.activate()
    return alert


def compare(desktop, alert, reference, what):
    """Beside each other, and neither with the keyboard, so that both are drawn alike."""
    width, height = desktop.screen.size
    alert.handle.configure(x=0, y=40)
    reference.handle.configure(x=0, y=80 + alert.frame().height)
    desktop.input.move(width - 1, height - 1)
    keyboard = Neighbour(desktop, Frame(width - 40, height - 40, 20, 20))
    try:
        keyboard.activate()
        wait_until(lambda: same_looks(alert, reference), what)
    finally:
        keyboard.remove()


def same_looks(alert, reference):
    try:
        return alert.frame()[2:] == reference.frame()[2:] and alert.picture() == reference.picture()
    except error.XError:
        return False  # one of them is just being resized
