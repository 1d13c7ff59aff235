"""Reads the committed lists of what is left out of a measurement, each entry with its reason. Entries are found again by
the content of a line, never by its number: an entry whose line has changed matches nothing, and that is an error.

An entry is a paragraph of "key: value" lines; a value goes on in the next line when that is indented. Lines that begin
with "#" are comments."""


class Entry(dict):
    """The keys and values of one paragraph; `used` is for the caller, who sets it when the entry has matched."""

    def __init__(self, values, place):
        super().__init__(values)
        self.place = place
        self.used = False


def paragraphs(path):
    """The paragraphs of a file without its comments, each with the number of its first line."""
    lines, first = [], 0
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            if line.startswith("#"):
                continue
            if not line.strip():
                if lines:
                    yield first, lines
                lines = []
                continue
            if not lines:
                first = number
            lines.append(line.rstrip("\n"))
    if lines:
        yield first, lines


def read_entries(path, needed, allowed=()):
    """The entries of a list. Each must have the needed keys and may have the allowed ones."""
    entries = []
    for number, lines in paragraphs(path):
        place, values, key = f"{path}:{number}", {}, None
        for line in lines:
            if line[0] == " " and key is not None:
                values[key] += " " + line.strip()
                continue
            key, colon, value = line.partition(":")
            if not colon or key in values or key not in (*needed, *allowed):
                raise SystemExit(f"error: {place}: '{line}' is none of {', '.join((*needed, *allowed))}, or stands twice")
            values[key] = value.strip()
        for key in needed:
            if not values.get(key):
                raise SystemExit(f"error: {place}: the entry has no '{key}'")
        entries.append(Entry(values, place))
    return entries
