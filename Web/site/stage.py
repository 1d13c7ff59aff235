"""Lays the pages out for MkDocs: python3 stage.py ROOT PAGES

PAGES gets the Markdown files and pictures of the repository at the same places, so that links between them stay as they
are. A source file or folder that a page links gets a page of its own (PATH.md, FOLDER/index.md), on which it can be read.
"""
import pathlib
import re
import shutil
import sys

import games

LINK = re.compile(r"\]\(([^)#\s]+)(#[^)\s]*)?\)")
CODE = re.compile(r"^```.*?^```|`[^`\n]*`", re.S | re.M)
LANGUAGES = {".lua": "lua", ".cpp": "cpp", ".h": "cpp", ".py": "python", ".sh": "sh", ".js": "js", ".ts": "ts",
             ".tmx": "xml", ".cmake": "cmake", ".yml": "yaml", ".json": "json"}
AS_THEY_ARE = {".png", ".gif", ".svg", ".jpg"}


def pages(root):
    return [path for pattern in ("README.md", "CONTRIBUTING.md", "CHANGELOG.md", "Fuzz/README.md", "Docs/*.md")
            for path in sorted(root.glob(pattern))]


def links(markdown):
    """The relative links of a page, without those in code."""
    for target, _ in LINK.findall(CODE.sub("", markdown)):
        if ":" not in target:
            yield target


def source_page(root, path):
    name = path.relative_to(root)
    try:
        text = path.read_text()
    except UnicodeDecodeError:
        return f"# {name}\n\nThis file is not text; it is in the repository.\n"
    fence = "`" * 6
    return f"# {name}\n\n{fence}{LANGUAGES.get(path.suffix, 'text')}\n{text}\n{fence}\n"


def folder_page(root, path):
    def link(entry):
        ending = "" if entry.suffix in AS_THEY_ARE else "/index.md" if entry.is_dir() else ".md"
        return f"- [{entry.name}]({entry.name}{ending})\n"
    rows = "".join(map(link, sorted(path.iterdir())))
    return f"# {path.relative_to(root)}\n\n{rows}"


def put(root, out, path):
    """A file or folder that a page links."""
    target = out / path.relative_to(root)
    target.parent.mkdir(parents=True, exist_ok=True)
    if path.suffix in AS_THEY_ARE:
        shutil.copyfile(path, target)
    elif path.is_dir():
        target.mkdir(exist_ok=True)
        (target / "index.md").write_text(folder_page(root, path))
        for entry in path.iterdir():
            put(root, out, entry)
    else:
        pathlib.Path(str(target) + ".md").write_text(source_page(root, path))


def stage(root, out):
    shutil.rmtree(out, ignore_errors=True)
    out.mkdir(parents=True)
    own = pages(root)
    for page in own:
        target = out / page.relative_to(root)
        target.parent.mkdir(parents=True, exist_ok=True)
        markdown = page.read_text()
        target.write_text(markdown)
        for link in links(games.TO_PLAY.sub("", markdown)):  # a game stands in place of these
            linked = (page.parent / link).resolve()
            if not linked.is_relative_to(root) or not linked.exists():
                sys.exit(f"error: {page.relative_to(root)}: the link {link} leads nowhere in the repository")
            if linked not in own:
                put(root, out, linked)


if __name__ == "__main__":
    stage(pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve())
