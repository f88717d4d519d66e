"""Tables as docs/performance.md has them, padded so that they can be read where they are printed."""


def print_table(headings, rows):
    """Prints the heading and the rows; texts stand left in the first column, figures right in all others."""
    lines = [headings, *rows]
    widths = [max(3, *map(len, column)) for column in zip(*lines)]

    def line(cells):
        first, *others = (cell.ljust(width) if place == 0 else cell.rjust(width)
                          for place, (cell, width) in enumerate(zip(cells, widths)))
        return "| " + " | ".join((first, *others)) + " |"

    print(line(headings))
    print("|-" + "-" * widths[0] + "-|" + "|".join("-" * width + "-:" for width in widths[1:]) + "|")
    for row in rows:
        print(line(row))
