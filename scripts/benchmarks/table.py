"""The results as Markdown."""
from .cases import MODES, heading, size_text
from .results import summaries
from .rows import REFERENCE, ROWS


def markdown(results):
    found = summaries(results)
    parts = ["# Calls to another process", machine_text(results), explanation(results)]
    for mode, title in MODES.items():
        cases = [case for case in found if case.kind == "calls" and case.mode == mode and case.threads == case.hosts == 1]
        parts += section(heading(title), cases, found, lambda case: size_text(case.size))
    shared = [case for case in found if case.kind == "calls" and case.mode == "free"]
    for size in sorted({case.size for case in shared if case.threads > 1 or case.hosts > 1}):
        of_size = [case for case in shared if case.size == size]
        threads = sorted((case for case in of_size if case.hosts == 1), key=lambda case: case.threads)
        hosts = sorted((case for case in of_size if case.threads == 1), key=lambda case: case.hosts)
        if len(threads) > 1:
            parts += section(f"Threads on one session, {size_text(size)}, not pinned", threads, found,
                             lambda case: count_text(case.threads, "thread"))
        if len(hosts) > 1:
            parts += section(f"Hosts at one server, {size_text(size)}, not pinned", hosts, found,
                             lambda case: count_text(case.hosts, "host"), rate=True)
    parts += beginnings(found)
    parts += notes(results)
    parts += every_figure(found)
    return "\n\n".join(parts) + "\n"


def machine_text(results):
    return ", ".join(str(value) for value in results.get("machine", {}).values()) + "."


def explanation(results):
    return (f"{count_text(results['rounds'], 'round')}. In each round every row is measured once per case, so that all rows meet the same "
            "machine. A cell has the ratio to R, the median time of a call, and the 99th percentile (of fewer than 100 calls: "
            "the longest). The ratio is the median over the rounds of the ratios within a round; the times are medians over the "
            "rounds.")


def section(title, cases, found, label, rate=False):
    """A table with a column for each case; nothing if there are no cases."""
    if not cases:
        return []
    lines = [f"| | {' | '.join(label(case) for case in cases)} |", "|---|" + "--:|" * len(cases)]
    for row in rows_of(cases, found):
        cells = (cell(found[case].get(row), rate) for case in cases)
        lines.append(f"| {ROWS[row].title} | {' | '.join(cells)} |")
    return [f"## {title}", "\n".join(lines)]


def rows_of(cases, found):
    """In the order of ROWS."""
    return [row for row in ROWS if any(row in found[case] for case in cases)]


def cell(summary, rate):
    if summary is None:
        return "–"
    times = f"{time_text(summary.figures['median_us'])} / {time_text(summary.figures['p99_us'])}"
    if rate:
        times += f" · {summary.figures['calls_per_second']:,.0f}/s"
    return f"{ratio_text(summary)} · {times}"


def ratio_text(summary):
    return "–" if summary.ratio is None else f"**{number_text(summary.ratio)}**"


def time_text(microseconds):
    """With three digits."""
    if microseconds >= 999.5:
        return f"{three_digits(microseconds / 1000)} ms"
    return f"{three_digits(microseconds)} µs"


def three_digits(number):
    return f"{number:.2f}" if number < 9.995 else f"{number:.1f}" if number < 99.95 else f"{number:.0f}"


def count_text(count, what):
    return f"{count} {what}" if count == 1 else f"{count} {what}s"


def number_text(ratio):
    """With enough digits to see a difference of a tenth."""
    return f"{ratio:.3f}" if ratio < 0.0995 else f"{ratio:.2f}"


def beginnings(found):
    parts = []
    for case in found:
        if case.kind == "first":
            parts += section(f"From connecting to the first reply, {MODES[case.mode]}", [case], found,
                             lambda case: size_text(case.size))
        if case.kind == "start":
            lines = ["| | ratio | processor time | time | resident | libraries |", "|---|--:|--:|--:|--:|--:|"]
            for row in rows_of([case], found):
                summary = found[case][row]
                figures = summary.figures
                lines.append(
                    f"| {ROWS[row].title} | {ratio_text(summary)} | {time_text(figures['cpu_ms'] * 1000)} "
                    f"| {time_text(figures['elapsed_ms'] * 1000)} | {figures['resident_kb'] / 1024:.1f} MiB "
                    f"| {figures['libraries']:.0f} |")
            parts += [f"## From the start of a process to its first reply, the server running, {MODES[case.mode]}",
                      "\n".join(lines)]
    return parts


def notes(results):
    lines = []
    for entry in results.get("left_out", []):
        lines.append(f"- {ROWS[entry['row']].title} is left out where {entry['reason']}.")
    for entry in results.get("failures", []):
        lines.append(f"- **{ROWS[entry['row']].title} failed** in round {entry['round'] + 1}: {entry['message']}")
    lines = list(dict.fromkeys(lines))
    return ["## Left out", "\n".join(lines)] if lines else []


def every_figure(found):
    lines = ["| case | row | ratio in each round | median | p99 | calls/s |", "|---|---|---|--:|--:|--:|"]
    for case, rows in found.items():
        if case.kind == "start":
            continue
        for row in rows_of([case], found):
            summary = rows[row]
            ratios = " ".join(map(number_text, summary.ratios)) if row != REFERENCE else ""
            rate = summary.figures.get("calls_per_second")
            lines.append(f"| {case.title()} | {ROWS[row].title} | {ratios} | {time_text(summary.figures['median_us'])} "
                         f"| {time_text(summary.figures['p99_us'])} | {f'{rate:,.0f}' if rate else ''} |")
    return ["## Every round", "\n".join(lines)] if len(lines) > 2 else []
