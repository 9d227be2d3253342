"""The ratios to R as a picture: one panel for each placement, and for threads and hosts."""
import math
from dataclasses import dataclass
from xml.sax.saxutils import escape

from .cases import MODES, heading, size_text
from .results import summaries
from .rows import OURS, ROWS

COLUMNS = 2
PANEL_WIDTH, PANEL_HEIGHT = 470, 330
LEFT, RIGHT, TOP, BOTTOM = 50, 20, 40, 40  # margins within a panel
LEGEND_LINE = 24
LEGEND_ENTRY = 235  # width
STEPS = (1, 2, 5)
WIDE = 1000  # an axis over more than this factor has only powers of ten

# Colours that people who confuse some colours can also tell apart, and a mark for each row.
STYLES = {
    "packets": ("#999999", "square"),
    "futex": ("#666666", "triangle"),
    "spin": ("#000000", "diamond"),
    "thrift": ("#0072b2", "circle"),
    "sd-bus": ("#56b4e9", "square"),
    "grpc": ("#009e73", "triangle"),
    "zeromq": ("#cc79a7", "diamond"),
    "nng": ("#e69f00", "circle"),
    "capnp": ("#8b5a2b", "square"),
    OURS: ("#d55e00", "circle"),
}


@dataclass
class Panel:
    title: str
    labels: list  # of the places on the horizontal axis
    series: dict  # row -> list of ratios; None where there is none


def panels(results):
    found = summaries(results)
    calls = [case for case in found if case.kind == "calls"]
    single = [case for case in calls if case.threads == case.hosts == 1]
    result = [panel(heading(title), [case for case in single if case.mode == mode], found,
                    lambda case: size_text(case.size)) for mode, title in MODES.items()]
    for size in sorted({case.size for case in calls if case.threads > 1 or case.hosts > 1}):
        of_size = [case for case in calls if case.size == size and case.mode == "free"]
        for title, count, other in (("Threads on one session", "threads", "hosts"), ("Hosts at one server", "hosts", "threads")):
            cases = sorted((case for case in of_size if getattr(case, other) == 1), key=lambda case: getattr(case, count))
            if len(cases) > 1:
                result.append(panel(f"{title}, {size_text(size)}, not pinned", cases, found,
                                    lambda case, count=count: str(getattr(case, count))))
    return [entry for entry in result if entry.series]


def panel(title, cases, found, label):
    rows = [row for row in STYLES if any(row in found[case] for case in cases)]
    series = {row: [found[case][row].ratio if row in found[case] else None for case in cases] for row in rows}
    return Panel(title, [label(case) for case in cases],
                 {row: ratios for row, ratios in series.items() if any(ratio is not None for ratio in ratios)})


def svg(results):
    drawn = panels(results)
    rows = [row for row in STYLES if any(row in entry.series for entry in drawn)]
    legend_lines = math.ceil(len(rows) * LEGEND_ENTRY / (COLUMNS * PANEL_WIDTH)) if rows else 0
    legend_top = math.ceil(len(drawn) / COLUMNS) * PANEL_HEIGHT + 45
    width, height = COLUMNS * PANEL_WIDTH, legend_top + (legend_lines + 1) * LEGEND_LINE
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}" '
             'role="img" font-family="sans-serif" font-size="13">',
             "<title>Calls to another process: time as a multiple of a bare stream socket exchange</title>",
             f'<rect width="{width}" height="{height}" fill="white"/>',
             f'<text x="{width / 2:.0f}" y="26" text-anchor="middle" font-size="17">Median time of a call as a multiple of R, '
             "a bare stream socket exchange; lower is better</text>"]
    for number, entry in enumerate(drawn):
        row, column = divmod(number, COLUMNS)
        lines.append(f'<g transform="translate({column * PANEL_WIDTH} {row * PANEL_HEIGHT + 35})">')
        lines += panel_lines(entry)
        lines.append("</g>")
    lines += legend(rows, legend_top, width)
    return "\n".join([*lines, "</svg>", ""])


def ticks(low, high):
    """1, 2 and 5 times powers of ten, from at most `low` to at least `high`. Only powers of ten if that is far."""
    steps = STEPS if high / low <= WIDE else STEPS[:1]
    powers = range(math.floor(math.log10(low)) - 1, math.ceil(math.log10(high)) + 1)
    values = [step * 10.0 ** power for power in powers for step in steps]
    begin = max(value for value in values if value <= low * 1.0001)
    end = min(value for value in values if value >= high / 1.0001)
    return [value for value in values if begin <= value <= end]


def panel_lines(entry):
    ratios = [ratio for values in entry.series.values() for ratio in values if ratio is not None and ratio > 0]
    axis = ticks(min([*ratios, 0.5]), max([*ratios, 2]))
    low, high = math.log(axis[0]), math.log(axis[-1])
    bottom, right = PANEL_HEIGHT - BOTTOM, PANEL_WIDTH - RIGHT

    def y(ratio):
        return bottom - (math.log(ratio) - low) / (high - low) * (bottom - TOP)

    def x(place):
        return LEFT + (place + 0.5) * (right - LEFT) / len(entry.labels)

    lines = [f'<text x="{LEFT}" y="{TOP - 14}" font-weight="bold">{escape(entry.title)}</text>']
    for value in axis:
        is_reference = value == 1
        lines.append(f'<line x1="{LEFT}" x2="{right}" y1="{y(value):.1f}" y2="{y(value):.1f}" '
                     f'stroke="{"#444444" if is_reference else "#dddddd"}" stroke-width="{1.5 if is_reference else 1}"/>')
        lines.append(f'<text x="{LEFT - 8}" y="{y(value) + 4:.1f}" text-anchor="end">{"R" if is_reference else f"{value:g}"}</text>')
    for place, label in enumerate(entry.labels):
        lines.append(f'<text x="{x(place):.1f}" y="{bottom + 20}" text-anchor="middle">{escape(label)}</text>')
    for row, values in entry.series.items():
        lines += series_lines(row, [(x(place), y(ratio)) for place, ratio in enumerate(values) if ratio])
    return lines


def series_lines(row, points):
    colour, shape = STYLES[row]
    path = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
    width = 3.5 if row == OURS else 1.5
    return [f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="{width}"/>',
            *(mark(shape, x, y, colour, 5.5 if row == OURS else 4) for x, y in points)]


def mark(shape, x, y, colour, radius):
    if shape == "circle":
        return f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{radius}" fill="{colour}"/>'
    corners = {"square": ((-1, -1), (1, -1), (1, 1), (-1, 1)), "triangle": ((0, -1.2), (1.2, 1), (-1.2, 1)),
               "diamond": ((0, -1.4), (1.4, 0), (0, 1.4), (-1.4, 0))}[shape]
    path = " ".join(f"{x + dx * radius:.1f},{y + dy * radius:.1f}" for dx, dy in corners)
    return f'<polygon points="{path}" fill="{colour}"/>'


def legend(rows, top, width):
    per_line = max(1, int(width // LEGEND_ENTRY))
    lines = []
    for number, row in enumerate(rows):
        line, column = divmod(number, per_line)
        x, y = LEFT / 2 + column * LEGEND_ENTRY, top + line * LEGEND_LINE
        lines += series_lines(row, [(x, y), (x + 30, y)])
        weight = ' font-weight="bold"' if row == OURS else ""
        lines.append(f'<text x="{x + 40:.1f}" y="{y + 4:.1f}"{weight}>{escape(ROWS[row].title)}</text>')
    return lines
