"""What the public headers declare, as far as the reference needs it: classes with their namespaces, members and subjects."""
import re
from pathlib import Path

HEADER_FOLDERS = ["include/zvutil", "host/HostSupport/include", "host/DockFramework/include",
                  "host/zv_logging/include", "apps/workbench/include"]
DETAIL_FOLDERS = ["include/zvutil/impl", "include/zvutil/details"]

CLASS = re.compile(r"^(?:class|struct) (?:[A-Z_]+_EXPORT )?(\w+)\b(?! *;)")
MEMBER = re.compile(r"(?:^|[\s&*~])(\w+|operator *\S+)\(")


class PublicClass:
    def __init__(self, name, qualified, header):
        self.name = name
        self.qualified = qualified
        self.header = header
        self.members = set()


def public_headers(root):
    for folder in HEADER_FOLDERS:
        for header in sorted(Path(root, folder).rglob("*.h")):
            path = header.relative_to(root).as_posix()
            if not any(path.startswith(detail + "/") for detail in DETAIL_FOLDERS):
                yield path


class Scope:
    """Follows the namespaces of a header line by line; namespaces aren't indented."""

    def __init__(self):
        self.namespace = ""
        self.is_in_body = False

    def qualified(self, name):
        return f"{self.namespace}::{name}" if self.namespace else name

    def enter(self, line):
        if match := re.match(r"namespace ([\w:]+) \{", line):
            self.namespace = match[1]
        elif line == "{":
            self.is_in_body = True
        elif line.startswith("}"):
            if not self.is_in_body:
                self.namespace = ""
            self.is_in_body = False


def public_classes(root):
    """The classes at namespace level by name, with their members that aren't private."""
    classes = {}
    for path in public_headers(root):
        scope, current, is_private = Scope(), None, False
        for line in Path(root, path).read_text(encoding="utf-8").splitlines():
            scope.enter(line)
            if (match := CLASS.match(line)) and not line.endswith(";"):
                is_private = False
                current = classes[match[1]] = PublicClass(match[1], scope.qualified(match[1]), path)
            elif line.startswith("};"):
                current = None
            elif access := re.match(r"(public|protected|private|Q_SIGNALS)\b", line):
                is_private = access[1] == "private"
            elif current and not is_private and re.match(r"    \S", line) and not line.strip().startswith("//"):
                if match := MEMBER.search(line):
                    current.members.add(match[1])
    return classes
