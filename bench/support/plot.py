"""A plot of ratios as SVG: a bar for each contestant, and a line where the yardstick is."""
from xml.sax.saxutils import escape

WIDTH, NAMES, RIGHT = 860, 330, 70  # pixels: the whole, the names on the left, the figures on the right
BAR, GAP, TITLE = 18, 6, 34
COLOURS = {"ours": "#2f6f9f", "others": "#b5b5b5", "yardstick": "#4d4d4d"}
OURS = ("phctl", "PH_")


def colour(name, is_yardstick):
    kind = "yardstick" if is_yardstick else "ours" if name.startswith(OURS) or "phctl" in name else "others"
    return COLOURS[kind]


def text(x, y, content, **attributes):
    written = "".join(f' {name.replace("_", "-")}="{value}"' for name, value in attributes.items())
    return f'<text x="{x:.0f}" y="{y:.0f}"{written}>{escape(content)}</text>'


def group(top, title, bars):
    """A contest's bars, in a scale of its own; the yardstick is the last. Returns the SVG and the height."""
    scale = (WIDTH - NAMES - RIGHT) / max(ratio for _, ratio in bars)
    parts = [text(0, top + TITLE - 12, title, font_weight="bold")]
    y = top + TITLE
    for index, (name, ratio) in enumerate(bars):
        parts.append(text(NAMES - 8, y + BAR - 5, name, text_anchor="end"))
        parts.append(f'<rect x="{NAMES}" y="{y}" width="{ratio * scale:.1f}" height="{BAR}" '
                     f'fill="{colour(name, index == len(bars) - 1)}"/>')
        parts.append(text(NAMES + ratio * scale + 6, y + BAR - 5, f"{ratio:.2f}"))
        y += BAR + GAP
    line = NAMES + scale
    parts.append(f'<line x1="{line:.1f}" y1="{top + TITLE - 4}" x2="{line:.1f}" y2="{y}" stroke="#c03030" '
                 'stroke-dasharray="4 3"/>')
    return parts, y - top


def write(file, contests):
    """`contests` are titles with (name, ratio) pairs, the yardstick's last."""
    parts, height = [], 0
    for title, bars in contests:
        drawn, taken = group(height, title, bars)
        parts += drawn
        height += taken
    with open(file, "w", encoding="utf-8") as out:
        out.write(f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height + GAP}" '
                  f'viewBox="0 0 {WIDTH} {height + GAP}" font-family="sans-serif" font-size="13">\n'
                  f'<rect width="100%" height="100%" fill="#ffffff"/>\n' + "\n".join(parts) + "\n</svg>\n")
