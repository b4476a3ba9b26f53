#!/usr/bin/env python3
"""Makes the reference site from README.md, the pages of docs/ and those that the declarations give (docs/reference/).

make_site.py SOURCE FOLDER VERSION

A page of the site is a page of docs/, or a part of a long one: each class, each group of commands. Links between the
Markdown pages become links of the site; names of classes and enumerations link to where they are described.
"""

import dataclasses
import html
import json
import pathlib
import posixpath
import re
import shutil
import string
import sys

import markdown

HERE = pathlib.Path(__file__).parent

# The pages of docs/, as a newcomer reads them.
GUIDE = {
    "Use": ["installing", "command-line", "python", "c-interface", "units", "codes", "exchange", "older-projects", "gbxml", "report", "check"],
    "Model": ["windows", "transfer-functions", "schedules", "spaces", "air-systems", "fan-power", "dx-curves", "equipment", "plants", "weather", "buildings", "results"],
    "Design": ["architecture", "transactions", "choices"],
}
REFERENCE = ["classes/index.html", "enumerations.html", "files.html", "tables.html", "commands/index.html"]

FRONT = """## Where to look

- [Tour](site:tour.html): the first commands, from a shell and from Python
- [Classes](docs/reference/classes.md): members with units, allowed values and codes; records with offsets
- [Enumerations](docs/reference/enumerations.md), [record files](docs/reference/files.md), [index tables](docs/reference/tables.md)
- [Commands](docs/reference/commands.md): options and examples
- [Python](docs/python.md) and [C](docs/c-interface.md)
- [Buildings in gbXML](docs/gbxml.md)
- [The report](docs/report.md)
- [Exchange text](docs/exchange.md) and its [JSON Schema](docs/reference/exchange.schema.json)
"""


@dataclasses.dataclass
class Page:
    address: str  # in the site: "classes/WIN_Window.html"
    title: str
    text: str     # Markdown
    source: str   # the file that links in the text start from: "docs/reference/classes.md"
    kind: str     # what the search calls it
    body: str = ""

    @property
    def root(self):
        return "../" * self.address.count("/")


def parts_of(text, level):
    """What stands before the first heading of a level, and the sections under these headings."""
    first, *rest = re.split(rf"^{'#' * level} (?=\S)", text, flags=re.MULTILINE)
    sections = {}
    for part in rest:
        title, _, below = part.partition("\n")
        sections[title] = below
    return first, sections


def raised(text):
    """Headings one level up, as a part of a page becomes a page."""
    return re.sub(r"^#(#+ )", r"\1", text, flags=re.MULTILINE)


def title_of(text):
    return re.match(r"# (.+)", text).group(1)


class Site:
    def __init__(self, source):
        self.source = source
        self.pages = []
        self.names = {}  # of classes and enumerations, with their addresses
        self.addresses = {}  # in the site, of files in the repository and of their parts: "docs/reference/commands.md#tarn-walls"
        self.files = {"docs/reference/exchange.schema.json": "exchange.schema.json"}  # that are copied
        for picture in sorted((source / "docs/gallery").glob("*.svg")):
            self.files[f"docs/gallery/{picture.name}"] = f"gallery/{picture.name}"
        self.addresses.update(self.files)

    def read(self, name):
        return (self.source / name).read_text(encoding="utf-8")

    def add(self, address, text, source, kind, title=None):
        self.pages.append(Page(address, title or title_of(text), text, source, kind))
        self.addresses.setdefault(source, address)

    def collect(self):
        self.add_front()
        self.add_guide()
        self.add_classes()
        self.add_commands()
        for name in ("enumerations", "tables"):
            self.add(f"{name}.html", self.read(f"docs/reference/{name}.md"), f"docs/reference/{name}.md", "reference")
        for name in parts_of(self.read("docs/reference/enumerations.md"), 2)[1]:
            self.names.setdefault(name, f"enumerations.html#{name.lower()}")

    def add_front(self):
        """README is the front page; its tour, and how to build for it, have a page of their own."""
        first, sections = parts_of(self.read("README.md"), 2)
        sections.pop("Where things live")
        tour = [f"## {name}\n{sections.pop(name)}" for name in ("Two commands", "A tour")]
        front = first + "".join(f"## {name}\n{text}" for name, text in sections.items()) + FRONT
        self.add("index.html", front, "README.md", "guide")
        self.add("tour.html", "# Tour\n\n" + "".join(tour), "README.md", "guide")

    def add_guide(self):
        listed = [name for names in GUIDE.values() for name in names]
        found = sorted(path.stem for path in (self.source / "docs").glob("*.md"))
        if sorted(listed) != found:
            raise SystemExit(f"site/make_site.py lists other pages than docs/ has: {sorted(set(listed) ^ set(found))}")
        for name in listed:
            self.add(f"guide/{name}.html", self.read(f"docs/{name}.md"), f"docs/{name}.md", "guide")

    def add_classes(self):
        """A page for each class: members and codes, and the record where it has one."""
        source, files = "docs/reference/classes.md", "docs/reference/files.md"
        first, classes = parts_of(self.read(source), 2)
        about_files, records = parts_of(self.read(files), 2)
        of_class = {}
        for title, table in records.items():  # "WIN_Window: 555 bytes", "WTH_Weather, DesignRecord: 100 bytes"
            of_class.setdefault(re.match(r"\w+", title).group(), []).append((title, table))
        listing = "".join(f"<li><code>{name}</code></li>\n" for name in classes)
        self.add("classes/index.html", f'{first}\n<ul class="columns">\n{listing}</ul>\n', source, "reference")
        for name, text in classes.items():
            failures, _, members = text.strip().partition("\n\n")
            text = f"# {name}\n\n{failures}\n\n## Members\n\n{raised(members)}\n"
            for title, table in of_class.get(name, ()):
                text += f"\n## Record, {title.partition(', ')[2] or title.partition(': ')[2]}\n{table}"
            self.names[name] = self.addresses[f"{source}#{name.lower()}"] = f"classes/{name}.html"
            self.add(f"classes/{name}.html", text, source, "class")
        rows = "".join("| `{}` | {} | {} |\n".format(*re.match(r"(\w+),? ?(.*): (.*)", title).groups()) for title in records)
        self.add("files.html", f"{about_files}\n| class | record | length |\n| --- | --- | --- |\n{rows}", files, "reference")

    def add_commands(self):
        source = "docs/reference/commands.md"
        first, groups = parts_of(self.read(source), 2)
        common = groups.pop("Options of every verb")
        topics = {name: text for name, text in groups.items() if name.startswith("Topic: ")}
        rows = ""
        for name, text in groups.items():
            if name in topics:
                continue
            address = f"commands/{name.removeprefix('tarn ')}.html"
            rows += f"| [{name}](site:{address}) | {text.strip().partition(chr(10))[0]} |\n"
            self.addresses[f"{source}#{name.replace(' ', '-')}"] = address
            self.add(address, f"# {name}\n{raised(text)}", source, "command")
        text = f"{first}\n| group | what it is for |\n| --- | --- |\n{rows}\n## Options of every verb\n{common}"
        text += "".join(f"\n## {name}\n{below}" for name, below in topics.items())
        self.add("commands/index.html", text, source, "reference")
        self.addresses[source] = "commands/index.html"

    def render(self):
        for page in self.pages:
            body = markdown.markdown(page.text, extensions=["tables", "fenced_code", "toc", "sane_lists"], output_format="html")
            body = body.replace("<table>", '<div class="scroll" tabindex="0" role="region" aria-label="Table"><table>').replace("</table>", "</table></div>")
            body = body.replace("<th></th>", "<td></td>")
            body = re.sub(r"<td><code>[^<]*", lambda found: found.group().replace("\\|", "|"), body)  # no column's end
            if page.kind == "class":
                body = self.with_places(body)
            # Links of the text first, then names that are no links yet.
            body = re.sub(r'(href|src)="([^"]*)"', lambda found: self.linked(page, *found.groups()), body)
            page.body = re.sub(r"(?<!\">)<code>(\w+)</code>", lambda found: self.named(page, found.group(1)), body)

    @staticmethod
    def with_places(body):
        """Members, in the first table of a class, get an address of their own."""
        members, end, rest = body.partition("</table>")
        return re.sub(r"<tr>(\s*<td><code>)(\w+)", r'<tr id="\2">\1\2', members) + end + rest

    def linked(self, page, attribute, target):
        """A link between files of the repository, or to "site:" and an address, as one between pages of the site."""
        if re.match(r"#|https?:", target):
            return f'{attribute}="{target}"'
        file, mark, place = target.partition("#")
        if file.startswith("site:"):
            return f'{attribute}="{page.root}{file.removeprefix("site:")}{mark}{place}"'
        file = posixpath.normpath(posixpath.join(posixpath.dirname(page.source), file))
        if part := self.addresses.get(f"{file}#{place}"):
            return f'{attribute}="{page.root}{part}"'
        if file not in self.addresses:
            raise SystemExit(f"{page.source}: the site has no page for the link to {target}")
        return f'{attribute}="{page.root}{self.addresses[file]}{mark}{place}"'

    def named(self, page, name):
        address = self.names.get(name)
        code = f"<code>{name}</code>"
        return f'<a href="{page.root}{address}">{code}</a>' if address and address != page.address else code

    def contents(self, page):
        """What stands beside every page: the guide and the reference."""
        by_address = {each.address: each.title for each in self.pages}
        groups = {"Start": ["index.html", "tour.html"]}
        groups |= {name: [f"guide/{each}.html" for each in pages] for name, pages in GUIDE.items()}
        groups["Reference"] = REFERENCE
        above = {"class": "classes/index.html", "command": "commands/index.html"}.get(page.kind)
        out = ""
        for group, addresses in groups.items():
            out += f"<h2>{group}</h2>\n<ul>\n"
            for address in addresses:
                current = ' aria-current="page"' if address == page.address else ' aria-current="true"' if address == above else ""
                out += f'<li><a href="{page.root}{address}"{current}>{html.escape(by_address[address])}</a></li>\n'
            out += "</ul>\n"
        return out

    def search_entries(self):
        """[title, kind, address, text]: pages, their sections, members of classes, names of codes."""
        for page in self.pages:
            yield [page.title, page.kind, page.address, ""]
            sections = re.split(r'<h[23] id="([^"]+)">(.*?)</h[23]>', page.body)
            for place, title, below in zip(sections[1::3], sections[2::3], sections[3::3]):
                if page.kind == "class":
                    continue  # its members are found one by one
                kind = "enumeration" if page.address == "enumerations.html" else f"{page.kind}: {page.title}"
                yield [plain(title), kind, f"{page.address}#{place}", plain(below)]
                if kind == "enumeration":
                    for name in re.findall(r"<td><code>(.*?)</code></td>", below):
                        yield [f"{plain(title)}.{html.unescape(name)}", "code", f"{page.address}#{place}", ""]
            if page.kind == "class":
                for name, rest in re.findall(r'<tr id="(\w+)">(.*?)</tr>', page.body, re.DOTALL):
                    yield [f"{page.title}.{name}", "member", f"{page.address}#{name}", plain(rest.partition("</td>")[2])]

    def write(self, folder, version):
        shutil.rmtree(folder, ignore_errors=True)
        template = string.Template((HERE / "page.html").read_text(encoding="utf-8"))
        for page in self.pages:
            title = page.title if page.address == "index.html" else f"{page.title} - Tarn"
            path = folder / page.address
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(template.substitute(root=page.root, title=html.escape(title), body=page.body, contents=self.contents(page), version=version), encoding="utf-8")
        for file, address in self.files.items():
            (folder / address).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(self.source / file, folder / address)
        for name in ("style.css", "search.js"):
            shutil.copy(HERE / name, folder / name)
        index = json.dumps(list(self.search_entries()), ensure_ascii=False, separators=(",", ":"))
        (folder / "search-index.js").write_text(f"window.searchIndex = {index};\n", encoding="utf-8")


def plain(rendered):
    """Rendered text without its marks, on one line."""
    return " ".join(html.unescape(re.sub(r"<[^>]+>", " ", rendered)).split())


def main():
    source, folder, version = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
    site = Site(source)
    site.collect()
    site.render()
    site.write(folder, version)
    print(f"{len(site.pages)} pages in {folder}")


if __name__ == "__main__":
    main()
