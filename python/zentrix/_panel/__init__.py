"""The live panel: a wave and the knobs of a lens that is removed from it. `panel` is zentrix.panel.

Without a display: pages, number_text, history, model, reduced_wave, shades, contrast_transfer, wave_files. Drawn with
matplotlib: pen, widgets, field, knob, picture, overlay, panel_column, window, live_panel, clipboard. `program` is the
command `python -m zentrix panel`; `library` is what all of them need of the package.
"""

from .._optics import takes_optics
from .._signals import takes_signals


@takes_signals
@takes_optics
def panel(wave, *, title="Zentrix", show="phase", colour=False, save="corrected.npy", nan="mean", **optics):
    """Opens a window with the wave, corrected live by the aberrations that its knobs show.

    wave           complex array (y, x), not modified. Pixels that are infinite, not a number or masked are marked; they
                   count as the mean of the others. Also a signal of HyperSpy, whose axes and metadata give pixel and kv
                   unless they are given here.
    title          of the window
    show           "real", "imaginary", "modulus", "log" or "phase": the display at the start
    colour         whether phases are shown in colours instead of greys
    save           the file that the button Save writes, with a .png and a .json of the same name. A number is appended to the
                   name if one of the files exists.
    nan            "mean", the only rule of the panel; here so that `panel.parameters` can open another one
    OPTICS

    These are what the knobs show at the start. The panel shows one value of each and refuses a sweep.

    Returns the panel at once:

        panel.parameters        keywords of zentrix.correct for the present knobs
        panel.applied           those of the corrections that were applied before
        panel.corrected()       the corrected wave, full size, complex64
        panel.set(C1=-60)       turns knobs; a step that can be undone
        panel.undo(), panel.redo(), panel.apply()
        panel.save(file)        writes file.npy, file.png and file.json
        panel.on_change(f)      calls f(panel) after each change
        panel.wait()            returns when all windows of matplotlib are closed; for scripts, not for notebooks
        panel.close()

    Needs matplotlib with an interactive backend. Raises RuntimeError without one, and ValueError or TypeError for
    invalid parameters.
    """
    _require_interactive_backend()
    from .live_panel import LivePanel

    opened = LivePanel(wave, title=title, show=show, colour=colour, save=save, nan=nan, **optics)
    opened.show()
    return opened


def _require_interactive_backend():
    from matplotlib import get_backend

    backend = get_backend()
    if backend.lower() in ("agg", "cairo", "pdf", "pgf", "ps", "svg", "template") or "inline" in backend:
        raise RuntimeError(
            f"The panel needs an interactive backend of matplotlib; the present one is {backend!r}. In a notebook, run "
            "%matplotlib widget (package ipympl) or %matplotlib notebook first. In a program, it needs a display and a "
            'window toolkit, as in matplotlib.use("TkAgg") or "QtAgg"; "WebAgg" shows it in a browser.'
        )
