"""The clipboard of the window system that a matplotlib canvas is on."""


def copy_text(canvas, text):
    """Puts text on the clipboard; false if the backend has none that is known here."""
    if hasattr(canvas, "get_tk_widget"):
        widget = canvas.get_tk_widget()
        widget.clipboard_clear()
        widget.clipboard_append(text)
        return True
    if _is_qt(canvas):
        from matplotlib.backends.qt_compat import QtWidgets

        QtWidgets.QApplication.clipboard().setText(text)
        return True
    return False


def _is_qt(canvas):
    return any(base.__name__ == "QWidget" for base in type(canvas).__mro__)
