"""Shows a dialog of the toolkit itself, to compare an alert with: python3 message.py TITLE TEXT BUTTON..."""

import ctypes
import sys

WARNING = 1


def main(title, text, *buttons):
    gtk = ctypes.CDLL("libgtk-3.so.0")
    gtk.gtk_message_dialog_new.restype = ctypes.c_void_p
    gtk.g_set_prgname(b"message")
    gtk.gtk_init(None, None)
    dialog = ctypes.c_void_p(gtk.gtk_message_dialog_new(None, 0, WARNING, 0, b"%s", title.encode()))
    gtk.gtk_message_dialog_format_secondary_text(dialog, b"%s", text.encode())
    for number, button in enumerate(buttons):
        gtk.gtk_dialog_add_button(dialog, button.encode(), number)
    gtk.gtk_dialog_set_default_response(dialog, 0)
    gtk.gtk_widget_show(dialog)
    gtk.gtk_main()


main(*sys.argv[1:])
