"""Makes the Markdown page of the results."""

LOST = 0.95  #: a peer is faster if it takes less than this times our time; less than that is noise
SEPARATOR = " · "

INTRODUCTION = """# Performance

This page was made by `bench/performance_table.py` on

- {processor};
- {versions}.

All calls are made from Python, on one processor, on images of {widths} pixels square. Results are compared
before they are timed. Times are processor times (of programs: times by the clock), the least of several turns in which
all ways of a row alternate in one process; destinations exist already where the function accepts one. The figures of a
cell belong to these sizes, in this order.

- **plain**: the time of the plain form of the same function (`ZXSetUseSIMD(0)`) over ours.
- **peers**: the time of what a user would write with another library over ours. Above 1 the script function is faster;
  **bold** figures are rows that it loses. "without AVX-512" is NumPy with its widest vectors disabled.
- **limit**: our time over the least that the function has to do: moving its bytes, or the most expensive part of its
  formula in NumPy.

A dash stands for a call that would take longer than some seconds.
"""


def number(value):
    """Two or three significant digits."""
    if value is None:
        return "–"
    decimals = 0 if value >= 100 else 1 if value >= 10 else 2 if value >= 0.1 else 3
    return f"{value:.{decimals}f}"


def ratio(numerator, denominator):
    return None if numerator is None or denominator is None else numerator / denominator


def cell(values, bold=lambda value: False):
    if all(value is None for value in values):
        return "–"
    return SEPARATOR.join(f"**{number(v)}**" if v is not None and bold(v) else number(v) for v in values)


def lost(value):
    return value is not None and value < LOST


def peer_ratios(row, results, narrow):
    """Peer -> its ratios at all widths. `narrow`: the results with AVX-512 disabled."""
    ratios = {}
    for source, ending in ((results, ""), (narrow, ", without AVX-512")):
        timings = source.get(row.name, {})
        for peer in row.peers:
            if any(peer in timing.peers for timing in timings.values()):
                ratios[peer + ending] = [ratio(t.peers.get(peer), t.ours) for t in timings.values()]
    return ratios


def row_line(row, unit, results, narrow):
    timings = results[row.name]
    scale = {width: 1e3 if unit == "ms" else 1e9 / width**2 for width in timings}
    peers = [f"{peer} {cell(values, lost)}" for peer, values in peer_ratios(row, results, narrow).items()]
    columns = (
        row.name,
        cell([t.ours * scale[width] for width, t in timings.items()]),
        cell([ratio(t.plain, t.ours) for t in timings.values()]),
        "<br>".join(peers) or "–",
        f"{row.limit.name} " + cell([ratio(t.ours, t.limit) for t in timings.values()]),
    )
    return "| " + " | ".join(columns) + " |"


def topic_table(topic, results, narrow):
    rows = [row_line(row, topic.unit, results, narrow) for row in topic.rows if row.name in results]
    head = f"| | {topic.unit} | plain | peers | limit |\n|---|---|---|---|---|"
    return "\n".join([f"## {topic.title}\n", *([topic.note + "\n"] if topic.note else []), head, *rows, ""])


def lost_table(topics, results, narrow):
    lines = []
    for row in (row for topic in topics for row in topic.rows if row.name in results):
        peers = {p: v for p, v in peer_ratios(row, results, narrow).items() if any(map(lost, v))}
        if peers:
            figures = "<br>".join(f"{peer} {cell(values, lost)}" for peer, values in peers.items())
            lines.append(f"| {row.name} | {figures} | {row.why or 'Not known.'} |")
    head = "## Rows lost to a peer\n"
    return "\n".join([head, "| | peers | why |\n|---|---|---|", *lines, ""] if lines else [head, "None.\n"])


def disagreements(results):
    lines = [
        f"- {name} at {width}: {', '.join(timing.differ)}"
        for name, timings in results.items()
        for width, timing in timings.items()
        if timing.differ
    ]
    return "\n".join(["## Results that differ\n", *lines, ""]) if lines else ""


def quality_table(qualities):
    def wrong(quality, value):
        if value is None:
            return "–"
        return f"{100 * value:.2f} %" if quality.phase.startswith("simulated") else f"{value} jumps"

    lines = [
        f"| {q.phase} | {number(q.ours * 1e3)} | {number(q.theirs and q.theirs * 1e3)} "
        f"| {wrong(q, q.our_wrong)} | {wrong(q, q.their_wrong)} |"
        for q in qualities
    ]
    return "\n".join([
        "## Quality of unwrapping\n",
        "Of a simulated phase the true surface is known: wrong pixels are those whose whole turns differ from those of"
        " most pixels.\nOf a recorded one, the jumps of more than half a turn that are left between neighbours are"
        " counted.\n",
        "| phase | `Goldstain` [ms] | scikit-image [ms] | wrong, `Goldstain` | wrong, scikit-image |",
        "|---|---|---|---|---|", *lines, "",
    ])  # fmt: skip


def warp_table(rows):
    """rows  (name, way, ns/pixel, ratio to the loop) of bench/warp_bench"""
    lines = [f"| {name} | {way} | {number(time)} | {number(share)} |" for name, way, time, share in rows]
    return "\n".join([
        "## Warps\n",
        "The warps are exported to C++ and have no script function. `bench/warp_bench` compares them at 2048 square with"
        " a bilinear\nloop that checks no edges; the last column is the time over that of the loop.\n",
        "| element type | function | ns/pixel | over the loop |", "|---|---|---|---|", *lines, "",
    ])  # fmt: skip


def job_table(jobs):
    """jobs  (width, [ms] of transforms, files, program, Python, ratios of program and Python to the bound)"""
    lines = [f"| {job[0]} | " + " | ".join(map(number, job[1:])) + " |" for job in jobs]
    return "\n".join([
        "## Correction on all processors\n",
        "Times by the clock, from `bench/whole_job.py`. The bound is two transforms by SciPy with one worker, reading"
        " and writing by\nNumPy, and 5 ms for the start of the program; for `zentrix.correct`, without that start.\n",
        "| width | transforms [ms] | files [ms] | `zentrix correct` [ms] | `zentrix.correct` [ms] | program / bound"
        " | Python / bound |", "|---|---|---|---|---|---|---|", *lines, "",
    ])  # fmt: skip


def page(topics, results, narrow, additions, processor, versions, widths):
    """The whole page.

    results, narrow  row's name -> width -> Timing
    additions        title of a topic -> text that follows its table
    """
    sizes = ", ".join(map(str, widths[:-1])) + (" and " if len(widths) > 1 else "") + str(widths[-1])
    parts = [INTRODUCTION.format(processor=processor, versions=versions, widths=sizes), disagreements(results)]
    parts.append(lost_table(topics, results, narrow))
    for topic in topics:
        parts += [topic_table(topic, results, narrow), additions.get(topic.title, "")]
    return "\n".join(part for part in parts if part)
