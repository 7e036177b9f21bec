"""A search for the aberrations of the panel's wave, on a thread of its own."""

import threading

from . import library


class Search:
    """Starts at once. `wave` and `optics` as for zentrix.estimate; neither is modified."""

    def __init__(self, wave, free, optics):
        self.fraction = 0.0  #: 0 to 1
        self.found = None  #: after its end: a zentrix.Estimate, or None if it failed
        self.problem = ""  #: why it failed
        self._best, self._lock, self._stopping = None, threading.Lock(), threading.Event()
        self._thread = threading.Thread(target=self._run, args=(wave, free, optics), daemon=True)
        self._thread.start()

    @property
    def is_running(self):
        return self._thread.is_alive()

    def stop(self):
        self._stopping.set()

    def wait(self):
        self._thread.join()

    def take_best(self):
        """The best coefficients since the last call, name -> (modulus, degrees), or None."""
        with self._lock:
            best, self._best = self._best, None
        return best

    def _progress(self, fraction, coefficients):
        with self._lock:
            self.fraction, self._best = fraction, dict(coefficients)
        return not self._stopping.is_set()

    def _run(self, wave, free, optics):
        try:
            self.found = library.estimate(wave, free=free, progress=self._progress, **optics)
        except Exception as problem:  # every one: the panel shows it
            self.problem = str(problem) or type(problem).__name__


def summary(found):
    """One line about a zentrix.Estimate."""
    known = [f"{name} ±{one.uncertainty:.2g}" for name, one in found.coefficients.items() if one.determined]
    unknown = [name for name, one in found.coefficients.items() if not one.determined]
    if not known:
        first = next(iter(found.coefficients.values()))
        return f"Not determined: {first.reason}."
    return f"Estimated: {', '.join(known)}" + (f". Not determined: {', '.join(unknown)}" if unknown else "")
