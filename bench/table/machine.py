"""What the table was made on."""

import platform
import re
from pathlib import Path

from .peers import LIBRARIES


def processor():
    """Model, family and caches as the system reports them."""
    try:
        text = Path("/proc/cpuinfo").read_text()
    except OSError:
        return platform.processor() or "unknown processor"

    def field(name):
        found = re.search(rf"^{name}\s*: (.*)$", text, re.M)
        return found[1].strip() if found else "?"

    features = [name for name in ("sse2", "avx2", "avx512f") if name in field("flags").split()]
    return (
        f"{field('model name')}, family {field('cpu family')}, model {field('model')}, "
        f"with {', '.join(features).upper()}; caches {', '.join(caches())}"
    )


def caches():
    for index in sorted(Path("/sys/devices/system/cpu/cpu0/cache").glob("index*")):
        level, kind, size = ((index / name).read_text().strip() for name in ("level", "type", "size"))
        if kind != "Instruction":
            yield f"L{level} {size}"


def versions():
    there = [f"{name} {module.__version__}" for name, (module, _) in LIBRARIES.items() if module]
    return f"Python {platform.python_version()}, " + ", ".join(there)
