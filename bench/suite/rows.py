"""What benchmarks find out, as a table and as a picture."""

import dataclasses


@dataclasses.dataclass
class Row:
    """One comparison: times in nanoseconds, and the goal: at most this ratio of ours to the floor."""
    name: str
    ours: float
    floor: float
    floor_text: str
    goal: float

    @property
    def ratio(self):
        return self.ours / self.floor


def readable(nanoseconds):
    """A time with a unit that suits it."""
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def table(rows, subject):
    """The rows as lines of a table; `subject` is what was measured."""
    lines = [f"| measurement | {subject} | floor | the floor is | ratio | goal |", "|---|---|---|---|---|---|"]
    return lines + [f"| {row.name} | {readable(row.ours)} | {readable(row.floor)} | {row.floor_text} | **{row.ratio:.2f}** | "
                    f"{row.goal:.2f} |" for row in rows]


def picture(rows, subject):
    """The ratios as a bar chart in SVG: a bar each, and a line at its goal."""
    scale, height = 260, 26
    left = 20 + 7 * max(len(row.name) for row in rows)
    parts = []
    for i, row in enumerate(rows):
        top = 40 + i * height
        colour = "#2a7f62" if row.ratio <= row.goal else "#c05a2e"
        parts.append(f'<text x="{left - 10}" y="{top + 14}" text-anchor="end">{row.name}</text>'
                     f'<rect x="{left}" y="{top + 2}" width="{row.ratio * scale:.0f}" height="16" fill="{colour}"/>'
                     f'<line x1="{left + row.goal * scale:.0f}" x2="{left + row.goal * scale:.0f}" y1="{top}" y2="{top + 20}" '
                     f'stroke="#222" stroke-width="2"/>'
                     f'<text x="{left + max(row.ratio, row.goal) * scale + 8:.0f}" y="{top + 14}">{row.ratio:.2f}</text>')
    bottom = 40 + len(rows) * height
    widest = max(2, *(max(row.ratio, row.goal) + 0.3 for row in rows))
    parts.append(f'<line x1="{left + scale}" x2="{left + scale}" y1="30" y2="{bottom}" stroke="#888" stroke-dasharray="3 3"/>')
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{left + widest * scale:.0f}" height="{bottom + 20}" '
            f'font-family="sans-serif" font-size="13"><rect width="100%" height="100%" fill="#fff"/>'
            f'<text x="{left}" y="20">time of {subject} / time of its floor (black mark: the goal)</text>'
            + "".join(parts) + "</svg>\n")
