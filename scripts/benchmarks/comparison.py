"""Two result files side by side."""
from .results import TIME, summaries
from .rows import OURS, REFERENCE, ROWS
from .table import number_text


def compare(old, new, tolerance):
    """Returns the lines to print, and whether a ratio of ours became worse.

    A ratio is worse if it has grown by more than the tolerance (0.1: a tenth), and if it is also above the ratio of
    every round of the old file, so that chance is not taken for a change. It is better in the opposite case.
    """
    before, after = summaries(old), summaries(new)
    lines = ["| case | row | old | new | change | |", "|---|---|--:|--:|--:|---|"]
    worse = False
    for case, rows in after.items():
        for row, now in rows.items():
            then = before.get(case, {}).get(row)
            if row == REFERENCE or then is None or then.ratio is None or now.ratio is None:
                continue
            word = verdict(then, now, tolerance)
            worse = worse or (row == OURS and word == "worse")
            lines.append(f"| {case.title()} | {ROWS[row].title} | {number_text(then.ratio)} | {number_text(now.ratio)} "
                         f"| {percent(now.ratio / then.ratio)} | {word} |")
    if len(lines) == 2:
        return ["The files have no case and row in common."], False
    return [*lines, "", *reference_lines(before, after), *missing_lines(before, after)], worse


def verdict(then, now, tolerance):
    if now.ratio > then.ratio * (1 + tolerance) and now.ratio > max(then.ratios):
        return "worse"
    if now.ratio < then.ratio / (1 + tolerance) and now.ratio < min(then.ratios):
        return "better"
    return ""


def percent(factor):
    return f"{(factor - 1) * 100:+.0f} %"


def reference_lines(before, after):
    """How R itself changed: by much, if the machine was another one or was busy."""
    changes = [after[case][REFERENCE].figures[TIME[case.kind]] / rows[REFERENCE].figures[TIME[case.kind]]
               for case, rows in before.items() if REFERENCE in rows and REFERENCE in after.get(case, {})]
    if not changes:
        return []
    return [f"R itself changed by {percent(min(changes))} to {percent(max(changes))}."]


def missing_lines(before, after):
    def entries(one, other):
        return sum(row not in other.get(case, {}) for case, rows in one.items() for row in rows)

    return [f"Only in the {name} file: {count} rows of cases." for name, count in
            (("old", entries(before, after)), ("new", entries(after, before))) if count]
