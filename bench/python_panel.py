#!/usr/bin/python3
"""Times the live panel: pictures per second while a knob is dragged, computed and painted in a real window.

    PYTHONPATH=build/release/python bench/python_panel.py [BACKEND [WIDTH...]]    # without a display: under xvfb-run

The picture is compared with the low-passed result of zentrix.correct first. "least" is the shortest time of a picture,
"CPU" the time of all threads together: other work on the machine hardly changes these two.
"""

import sys
import time

import matplotlib
import numpy as np
from matplotlib.backend_bases import MouseEvent

PICTURES = 60
LENS = dict(kv=300, pixel=0.02, C1=-62, A1=(14, 35), B2=(380, 110), C3=0.15)


def low_passed(wave, shape):
    """By the textbook: the middle of the centred spectrum."""
    spectrum = np.fft.fftshift(np.fft.fft2(wave))
    first = [full // 2 - kept // 2 for full, kept in zip(wave.shape, shape)]
    middle = spectrum[first[0] : first[0] + shape[0], first[1] : first[1] + shape[1]]
    return np.fft.ifft2(np.fft.ifftshift(middle)) * (middle.size / wave.size)


def drag(panel):
    """(seconds of each picture, processor seconds of a picture) of a knob that is dragged around."""
    knob = next(one for one in panel.window.widgets if one.subject == "A1" and hasattr(one, "radius"))
    times, processors = [], time.process_time()
    for count in range(PICTURES):
        angle = 2 * np.pi * count / PICTURES
        x, y = knob.box.middle[0] + knob.radius * np.cos(angle), knob.box.middle[1] + knob.radius * np.sin(angle)
        name = "motion_notify_event" if count else "button_press_event"
        event = MouseEvent(name, panel.window.canvas, x, y, button=1)
        start = time.perf_counter()
        panel.window.canvas.callbacks.process(name, event)
        panel.window.refresh()
        panel.window.canvas.flush_events()
        times.append(time.perf_counter() - start)
    processors = (time.process_time() - processors) / PICTURES
    release = MouseEvent("button_release_event", panel.window.canvas, x, y, button=1)
    panel.window.canvas.callbacks.process(release.name, release)
    return np.array(times[5:]) * 1e3, processors * 1e3


def main():
    matplotlib.use(sys.argv[1] if len(sys.argv) > 1 else "TkAgg")
    from zentrix._panel.live_panel import LivePanel

    random = np.random.default_rng(1)
    print(f"{matplotlib.get_backend()}: pictures per second (median), ms per picture (median, least, CPU)")
    for width in map(int, sys.argv[2:] or (512, 1024, 2048, 4096)):
        wave = random.normal(size=(2, width, width)).astype(np.float32)
        wave = 1 + 0.2 * (wave[0] + 1j * wave[1])
        start = time.perf_counter()
        panel = LivePanel(wave, **LENS)
        panel.show()
        panel.page = 1
        panel.window.refresh()
        opened = time.perf_counter() - start
        shown = panel.model.shown((panel.picture.box.height, panel.picture.box.width))[0]
        difference = np.abs(shown - low_passed(panel.corrected(), shown.shape)).max()
        if not difference < 1e-4:
            sys.exit(f"wrong picture: {difference}")
        for display, overlay in (("phase", False), ("modulus", False), ("phase", True)):
            panel.show_display(display)
            panel.picture.has_overlay = overlay
            times, processors = drag(panel)
            name = display + (" and transfer function" if overlay else "")
            numbers = (1000 / np.median(times), np.median(times), times.min(), processors)
            print(f"  {width:4} as {shown.shape[0]:4}  {name:28}", *(f"{number:7.1f}" for number in numbers))
        print(f"  opened in {opened:.2f} s")
        panel.close()


if __name__ == "__main__":
    main()
