"""Finds links that lead nowhere, in a site of HTML and in the Markdown of a repository."""
import re
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit

SCRIPT_LINK = re.compile(r'["\']((?:\.\./)?[\w.-]+\.html(?:#[\w-]+)?)["\']')


def is_external(target):
    return bool(urlsplit(target).scheme)


def external_error(target):
    """What is wrong with an address, as far as it can be told without asking for it."""
    parts = urlsplit(target)
    if parts.scheme in ("javascript", "mailto"):
        return ""
    if parts.scheme not in ("http", "https"):
        return f"has the scheme {parts.scheme}"
    return "" if re.fullmatch(r"[\w-]+(\.[\w-]+)+(:\d+)?", parts.netloc) else "names no host"


class Page(HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.links = []
        self.anchors = set()
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name in ("href", "src") and value:
                self.links.append(value)
            elif name == "id" or (name == "name" and tag == "a"):
                self.anchors.add(value)


class Site:
    """All pages below a folder, with the lists of links that their scripts read."""

    def __init__(self, folder):
        self.folder = Path(folder).resolve()
        self.pages = {page: Page(page.read_text(encoding="utf-8")) for page in sorted(self.folder.rglob("*.html"))}
        self.count = 0

    def errors(self):
        for page, content in self.pages.items():
            yield from self.errors_of(page, content.links)
        for script in sorted(self.folder.rglob("*.js")):
            found = SCRIPT_LINK.findall(script.read_text(encoding="utf-8"))
            yield from self.errors_of(script, [link for link in found if "#" in link or link.startswith("..")])

    def errors_of(self, source, targets):
        self.count += len(targets)
        for target in sorted(set(targets)):
            error = external_error(target) if is_external(target) else self.internal_error(source, target)
            if error:
                yield f"{source.relative_to(self.folder)}: the link to {target} {error}"

    def internal_error(self, source, target):
        path, _, fragment = target.partition("#")
        file = (source.parent / unquote(path)).resolve() if path else source
        if not file.is_file():
            return "leads to no file"
        if fragment and file in self.pages and unquote(fragment) not in self.pages[file].anchors:
            return "leads to no anchor"
        return ""


class Repository:
    """README.md, CONTRIBUTING.md and the pages of docs/, with anchors as the repository's web view has them."""

    LINK = re.compile(r"!?\[(?:[^\[\]]|!?\[[^\]]*\]\([^)]*\))*\]\(([^()\s]+)(?: \"[^\"]*\")?\)")
    ATTRIBUTE = re.compile(r"\b(?:src|srcset|href)=\"([^\"]+)\"")
    CODE = re.compile(r"(`+).*?\1")

    def __init__(self, root):
        self.root = root
        self.files = [root / name for name in ("README.md", "CONTRIBUTING.md", "CHANGELOG.md")]
        self.files += sorted(root.glob("docs/**/*.md"))
        self.count = 0

    @staticmethod
    def prose(file):
        """The lines that aren't code."""
        in_code = False
        for line in file.read_text(encoding="utf-8").splitlines():
            if line.lstrip().startswith(("```", "~~~")):
                in_code = not in_code
            elif not in_code:
                yield line

    def anchors(self, file):
        found, count = set(), {}
        for line in self.prose(file):
            if match := re.match(r"#+ +(.*)", line):
                text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", match[1]).replace("`", "").strip().lower()
                slug = re.sub(r"[^\w\- ]", "", text).replace(" ", "-")
                number = count.get(slug, 0)
                count[slug] = number + 1
                found.add(f"{slug}-{number}" if number else slug)
            found.update(re.findall(r"<a (?:id|name)=\"([^\"]+)\"", line))
        return found

    def errors(self):
        for file in self.files:
            for line in self.prose(file):
                line = self.CODE.sub(lambda code: "x" * len(code[0]), line)
                for target in self.targets(line):
                    self.count += 1
                    error = external_error(target) if is_external(target) else self.internal_error(file, target)
                    if error:
                        yield f"{file.relative_to(self.root)}: the link to {target} {error}"

    def targets(self, line):
        nested = re.findall(r"!\[[^\]]*\]\(([^()\s]+)\)", line)
        return sorted({*self.LINK.findall(line), *nested, *self.ATTRIBUTE.findall(line)})

    def internal_error(self, file, target):
        path, _, fragment = target.partition("#")
        found = (file.parent / unquote(path)).resolve() if path else file
        if not found.exists():
            return "leads to no file"
        if fragment and (found.suffix != ".md" or fragment not in self.anchors(found)):
            return "leads to no anchor"
        return ""
