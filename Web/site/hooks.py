"""What MkDocs does besides with the manual's pages: games that run, links into the repository, and anchors as in the
repository's own view."""
import html
import pathlib
import posixpath
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(pathlib.Path(__file__).parent))
import games  # noqa: E402
import stage  # noqa: E402

FENCE = re.compile(r"^```(\w+) (\S.*)$", re.M)
STEP = re.compile(r"^## (\d+)\. .*$", re.M)
HEADING = re.compile(r"^# (.*)$", re.M)


def slug(text, separator):
    """The anchor of a heading: lower case, blanks as hyphens, no punctuation."""
    return re.sub(r"[^\w\- ]", "", text.strip().lower()).replace(" ", separator)


def on_config(config):
    config["mdx_configs"].setdefault("toc", {})["slugify"] = slug
    listed = set(re.findall(r"[\w/]+\.md", repr(config["nav"])))
    more = [str(page.relative_to(ROOT)) for page in stage.pages(ROOT) if str(page.relative_to(ROOT)) not in listed]
    if more:
        config["nav"].append({"More": more})
    return config


def widget(game, text=None):
    """The place of a game in a page; its script and buttons come from examples.js."""
    code = f"```lua\n{text}```\n\n" if text else ""
    return f'{code}<div class="example" data-example="{game}"></div>\n'


def with_blocks(page, markdown):
    for found, game in reversed(list(games.blocks(page, markdown))):
        markdown = markdown[:found.end()] + "\n" + widget(game.id) + markdown[found.end():]
    return markdown


def with_examples(markdown):
    def replaced(found):
        text = games.example(ROOT, found[2]).files[found[2] + ".lua"].decode()
        return widget(found[2], text)
    return games.TO_PLAY.sub(replaced, markdown)


def with_steps(markdown):
    """The game of the tutorial stands at each step's end."""
    known = {step for step, _ in games.tutorial.steps(ROOT)}
    starts = [(found.start(), int(found[1])) for found in STEP.finditer(markdown)]
    ends = [start for start, _ in starts[1:]] + [markdown.index("\n## ", starts[-1][0] + 1) + 1]
    for (_, step), end in reversed(list(zip(starts, ends))):
        if step in known:
            markdown = markdown[:end] + widget(f"your_game-{step}") + "\n" + markdown[end:]
    return markdown


def with_file_names(markdown):
    """A block that names its file has the name above it: ```lua hop.lua."""
    return FENCE.sub(lambda found: f'<p class="file-name">{html.escape(found[2])}</p>\n\n```{found[1]}', markdown)


def with_source_links(page, markdown, files):
    """Links to files that have a page of their own, outside of code."""
    def replaced(found):
        target, anchor = found[1], found[2] or ""
        path = posixpath.normpath(posixpath.join(posixpath.dirname(page), target))
        for ending in (".md", "/index.md"):
            if not target.endswith(".md") and files.get_file_from_path(path + ending):
                return f"]({target.rstrip('/')}{ending}{anchor})"
        return found[0]
    parts, last = [], 0
    for code in list(stage.CODE.finditer(markdown)):
        parts += [stage.LINK.sub(replaced, markdown[last:code.start()]), code[0]]
        last = code.end()
    return "".join(parts) + stage.LINK.sub(replaced, markdown[last:])


def on_page_markdown(markdown, page, config, files):
    path = page.file.src_path
    if path.endswith("Your_Game.md"):
        markdown = with_steps(markdown)
    markdown = with_examples(with_blocks(path, markdown))
    markdown = with_source_links(path, markdown, files)
    title = HEADING.search(markdown)
    if title:
        page.meta.setdefault("title", title[1].replace("`", ""))
    return with_file_names(markdown)


def on_page_content(content, page, config, files):
    """Tables and blocks of code scroll sideways on a narrow page, by keyboard too."""
    content = content.replace("<table>", '<div class="table" role="region" aria-label="Table" tabindex="0"><table>')
    content = content.replace("</table>", "</table></div>")
    return content.replace("<pre>", '<pre tabindex="0">').replace("<img ", '<img loading="lazy" ')
