"""Follows every link, picture, script and style of a built site: python3 check_links.py SITE

Each leads to a file of the site, and its anchor to an element there. No row of a table is left as text. A link to another host is allowed for people to
follow, and nothing else may name one. Prints what is wrong, a line each; status 1 then.
"""
import html.parser
import pathlib
import sys
import urllib.parse

LOADED = {("img", "src"), ("script", "src"), ("link", "href")}


class Page(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.links, self.ids, self.inline, self.rows, self.tag = [], set(), [], [], ""
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        names = dict(attributes)
        self.tag = tag
        self.ids.update(filter(None, (names.get("id"),)))
        self.links += [(tag, name, names[name]) for name in ("href", "src") if names.get(name)]
        if "style" in names or any(name.startswith("on") for name in names) or (tag == "script" and "src" not in names):
            self.inline.append(tag)

    def handle_data(self, data):
        if self.tag == "p" and data.startswith("|"):
            self.rows.append(data)


def faults(site):
    pages = {path.resolve(): Page(path.read_text()) for path in site.rglob("*.html")}
    for path, page in pages.items():
        name = path.relative_to(site)
        yield from (f"{name}: a row of a table stands alone: {row[:60]}" for row in page.rows)
        yield from (f"{name}: <{tag}> has a script or style of its own, which the page's policy refuses"
                    for tag in page.inline)
        for tag, attribute, link in page.links:
            yield from (f"{name}: {link}: {why}" for why in fault_of(site, pages, path, (tag, attribute), link))


def fault_of(site, pages, path, kind, link):
    parts = urllib.parse.urlsplit(link)
    if parts.scheme or parts.netloc:
        if kind in LOADED:
            yield "is loaded from another host"
        return
    if link.startswith("/"):
        yield "is absolute: the site would not work under a sub-path"
        return
    target = (path.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else path
    if not target.is_relative_to(site) or not target.is_file():
        yield "leads to no file"
    elif parts.fragment and target in pages and not parts.fragment.startswith("example="):
        if urllib.parse.unquote(parts.fragment) not in pages[target].ids:
            yield "there is no such place on the page"


if __name__ == "__main__":
    root = pathlib.Path(sys.argv[1]).resolve()
    found = list(faults(root))
    print("\n".join(found) if found else f"{len(list(root.rglob('*.html')))} pages, and every link leads somewhere")
    sys.exit(1 if found else 0)
