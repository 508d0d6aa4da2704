#!/usr/bin/env python3
"""Makes a site of plain HTML out of the documents: scripts/docs_site.py TARGET [REFERENCE]

Every Markdown document of the tree becomes a page, the manual too; REFERENCE, the directory that Doxygen has written, is
copied beside them. Links to documents become links to their pages, links to other files of the tree go to copies of them.
Each link and each mark within a page has to lead somewhere: exit code 1 when one does not. Links to elsewhere are not tried.
"""
import html
import html.parser
import os
import pathlib
import posixpath
import re
import shutil
import subprocess
import sys

import markdown

ROOT = pathlib.Path(__file__).resolve().parent.parent
FIRST = ["README.md", "docs/first-host.md", "docs/first-plugin.md", "docs/plugins.md", "docs/architecture.md"]
STYLE = """
:root{--ink:#1c2330;--paper:#fff;--faint:#eef1f6;--line:#d8dde6;--link:#1d4fa8;color-scheme:light dark}
@media (prefers-color-scheme:dark){:root{--ink:#e4e8f0;--paper:#14181f;--faint:#1e242e;--line:#353c49;--link:#8ab4ff}}
body{margin:0;font:16px/1.55 system-ui,sans-serif;color:var(--ink);background:var(--paper);display:flex;flex-wrap:wrap}
nav{box-sizing:border-box;flex:0 0 15rem;padding:1rem;border-right:1px solid var(--line);font-size:.9rem}nav a{display:block;padding:.15rem 0}
main{flex:1 1 30rem;min-width:0;max-width:54rem;padding:1rem 2rem}
a{color:var(--link)}pre,code{background:var(--faint);font-size:.88em;border-radius:.3em}code{padding:.1em .25em}
pre{padding:.8em;overflow-x:auto}pre code{padding:0}table{border-collapse:collapse;display:block;overflow-x:auto}
th,td{border:1px solid var(--line);padding:.25rem .6rem;text-align:left;vertical-align:top}img{max-width:100%;height:auto}
@media (max-width:48rem){nav{flex-basis:100%;border-right:0;border-bottom:1px solid var(--line);columns:2}main{padding:1rem}}
@media print{nav{display:none}}
"""


def tracked(pattern):
    """Files of the tree; a source archive has nothing else in it."""
    result = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", pattern], cwd=ROOT, capture_output=True, text=True)
    if result.returncode == 0:
        return sorted(name for name in result.stdout.split() if (ROOT / name).exists())
    return sorted(str(path.relative_to(ROOT)) for path in ROOT.rglob(pattern) if path.relative_to(ROOT).parts[0] != "build")


def page_of(document):
    return "index.html" if document == "README.md" else document[:-3] + ".html"


def slug(text, _separator="-"):
    """As code hosts call the heading."""
    return re.sub(r"[^\w\- ]", "", re.sub(r"<[^>]*>", "", text).lower()).strip().replace(" ", "-")


class Site:
    def __init__(self, target):
        self.target = target
        self.copied = set()
        self.documents = [name for name in tracked("*.md") if name.split("/")[0] in ("docs",) or "/" not in name]
        self.documents.sort(key=lambda name: (FIRST.index(name) if name in FIRST else len(FIRST), name))
        self.titles = {name: self.title(name) for name in self.documents}

    @staticmethod
    def title(name):
        for line in (ROOT / name).read_text(encoding="utf-8").splitlines():
            if line.startswith("# "):
                return line[2:].replace("`", "")
        return name

    def link(self, document, address):
        """Where a link of a document leads in the site."""
        if re.match(r"[a-z]+:|#", address):
            return address
        path, mark, anchor = address.partition("#")
        full = posixpath.normpath(posixpath.join(posixpath.dirname(document), path))
        if full in self.titles:
            to = page_of(full)
        else:
            to = "files/" + full
            self.copy(full)
            if (ROOT / full).is_dir():
                to += "/index.html"
        return posixpath.relpath(to, posixpath.dirname(page_of(document)) or ".") + mark + anchor

    def copy(self, name):
        source, to = ROOT / name, self.target / "files" / name
        if name in self.copied or not source.exists():
            return
        self.copied.add(name)
        if not source.is_dir():
            to.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(source, to)
            return
        names = sorted({entry[len(name) + 1:].split("/")[0] for entry in tracked(f"{name}/*")})
        for entry in names:
            self.copy(f"{name}/{entry}")
        items = "".join(
            f'<li><a href="{html.escape(entry + ("/index.html" if (source / entry).is_dir() else ""))}">{html.escape(entry)}</a></li>\n'
            for entry in names)
        to.mkdir(parents=True, exist_ok=True)
        (to / "index.html").write_text(self.frame(f"files/{name}/index.html", name, f"<h1>{html.escape(name)}</h1><ul>{items}</ul>"),
                                       encoding="utf-8")

    def frame(self, page, title, body):
        up = lambda to: html.escape(posixpath.relpath(to, posixpath.dirname(page) or "."))
        entries = "".join(f'<a href="{up(page_of(name))}">{html.escape(self.titles[name])}</a>\n' for name in self.documents)
        entries += f'<a href="{up("manual.html")}">Manual of zyr-host</a>\n'
        if (self.target / "reference").exists():
            entries += f'<a href="{up("reference/index.html")}">Reference of all headers</a>\n'
        return (f'<!DOCTYPE html>\n<html lang="en"><head><meta charset="utf-8"><meta name="viewport" '
                f'content="width=device-width, initial-scale=1"><link rel="icon" href="data:,"><title>{html.escape(title)}</title>'
                f'<link rel="stylesheet" href="{up("style.css")}"></head>\n<body><nav>{entries}</nav><main>\n{body}\n</main></body></html>\n')

    def write(self, page, title, body):
        file = self.target / page
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(self.frame(page, title, body), encoding="utf-8")

    def make(self):
        (self.target / "style.css").write_text(STYLE, encoding="utf-8")
        for name in self.documents:
            text = (ROOT / name).read_text(encoding="utf-8")
            # The name of a block's file is for the test that builds it; readers see it above the block.
            text = re.sub(r"^```(\w+) (\S+)$", r"`\2`:\n\n```\1", text, flags=re.M)
            body = markdown.markdown(text, extensions=["extra", "toc", "sane_lists"],
                                     extension_configs={"toc": {"slugify": slug}})
            body = re.sub(r'\b(href|src)="([^"]*)"',
                          lambda match: f'{match[1]}="{html.escape(self.link(name, html.unescape(match[2])))}"', body)
            self.write(page_of(name), self.titles[name], body)
        manual = subprocess.run(["man", "-l", str(ROOT / "docs/man/zyr-host.1")], capture_output=True, text=True,
                                env={**os.environ, "MANWIDTH": "100", "LC_ALL": "C.UTF-8", "MAN_KEEP_FORMATTING": ""}).stdout
        manual = re.sub("\x1b\\[[0-9;]*m|.\b", "", manual)
        self.write("manual.html", "Manual of zyr-host", f"<h1>zyr-host</h1><pre>{html.escape(manual)}</pre>")


class Page(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.links, self.marks = [], set()
        self.feed(text)

    def handle_starttag(self, _tag, attributes):
        for key, value in attributes:
            if key in ("href", "src") and value:
                self.links.append(value)
            elif key in ("id", "name") and value:
                self.marks.add(value)


def check(target):
    """The links that lead nowhere, as "page: link". Doxygen's pages are looked into for what leads to them only."""
    pages, faults = {}, []

    def page_at(path):
        if path not in pages:
            pages[path] = Page(path.read_text(encoding="utf-8", errors="replace"))
        return pages[path]

    own = [path for path in sorted(target.rglob("*.html")) if path.relative_to(target).parts[0] not in ("reference", "files")]
    for path in own + sorted((target / "files").rglob("index.html")):
        for link in page_at(path).links:
            if re.match(r"[a-z]+:", link):
                continue
            name, _, mark = link.partition("#")
            to = pathlib.Path(os.path.normpath(path.parent / name)) if name else path
            if not to.is_file():
                faults.append(f"{path.relative_to(target)}: {link}")
            elif mark and to.suffix == ".html" and mark not in page_at(to).marks:
                faults.append(f"{path.relative_to(target)}: {link}: the page has no such mark")
    return faults, sum(len(page.links) for page in pages.values())


def main():
    if len(sys.argv) not in (2, 3) or sys.argv[1].startswith("-"):
        print(__doc__, file=sys.stderr)
        return 2
    target = pathlib.Path(sys.argv[1]).resolve()
    shutil.rmtree(target, ignore_errors=True)
    target.mkdir(parents=True)
    if len(sys.argv) == 3:
        shutil.copytree(sys.argv[2], target / "reference")
    Site(target).make()
    faults, count = check(target)
    for fault in faults:
        print(f"docs: a link leads nowhere: {fault}")
    print(f"docs: {target}/index.html, {count} links looked at")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
