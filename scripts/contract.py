#!/usr/bin/env python3
"""Says what separately built modules rely upon in each other, as one text that can be compared.

    scripts/contract.py OBJECT MODULE...            prints it
    scripts/contract.py --check FILE OBJECT ...     compares it with FILE: exit code 1 if anything of it is gone or has changed
    scripts/contract.py --write FILE OBJECT ...     writes it to FILE

OBJECT is tests/contract/contract_types.cpp compiled with debug information, whose classes give sizes, offsets and slots;
each MODULE is a shared object, whose exports are listed. From the public headers come the GUIDs of interfaces, the names
and keys under which records are stored, and the texts of enumerations. scripts/contract.sh builds what is needed.

Additions are no break, so a check only names them.
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
HEADERS = ("src/zyr_common", "src/picture")
# Helpers of templates that hold nothing: they come and go with the way in which a class is written.
HELPERS = re.compile(r"^zyr::(Record|RecordRoot|NumberedRecord|ArithmeticRecord|HashTable|\w+Facade|W[A-Z]\w*|NumberLanes|Ref|Scoped\w+|"
                     r"\w*Traits|Enumeration\w+|Hash|EqualTo|RecordField\w*|\w+IO|RecordPath|RecordWords|c_\w+)\b")
# Which instances of a container the library happens to use is no contract: those of int stand for all.
OTHER_INSTANCES = re.compile(r"^zyr::(Array|List|SortedMap|Pair|HashIterator|Hash(?:Map|Set|MultiMap)(?:Base|Entry)?)<"
                             r"(?!int(?:>|, int[,>]|, char>|, zyr::Hash))")


def read(*command, text=None):
    return subprocess.run(command, check=True, capture_output=True, encoding="utf-8", errors="replace", input=text).stdout


class Node:
    """One entry of the debug information."""
    __slots__ = ("tag", "parent", "children", "values")

    def __init__(self, tag, parent):
        self.tag, self.parent, self.children, self.values = tag, parent, [], {}


def read_nodes(object_file):
    nodes, open_nodes = {}, [Node("root", None)]
    entry = re.compile(r" *<([0-9a-f]+)><([0-9a-f]+)>: Abbrev Number: \d+ \(DW_TAG_(\w+)\)")
    value = re.compile(r" +<[0-9a-f]+> +DW_AT_(\w+) *: (?:\([a-z_0-9]+\) )?(.*)")
    node = None
    for line in read("readelf", "--debug-dump=info", "-W", object_file).splitlines():
        if match := entry.match(line):
            depth = int(match[1], 16)
            del open_nodes[depth + 1:]
            node = Node(match[3], open_nodes[depth])
            open_nodes[depth].children.append(node)
            open_nodes.append(node)
            nodes[match[2]] = node
        elif node is not None and (match := value.match(line)):
            node.values[match[1]] = re.sub(r"^\((?:indirect string, )?offset: 0x[0-9a-f]+\): ", "", match[2]).strip()
    return nodes


def number(node, key, default=0):
    text = node.values.get(key)
    if text is None:
        return default
    match = re.search(r"DW_OP_(?:constu|plus_uconst|lit): ?(\d+)|DW_OP_lit(\d+)", text)
    return int(match[1] or match[2]) if match else int(text.split()[0], 0)


class Layout:
    def __init__(self, object_file):
        self.nodes = read_nodes(object_file)
        self.names = {}
        self.mangled = {}

    def target(self, node):
        match = re.search(r"<0x([0-9a-f]+)>", node.values.get("type", ""))
        return self.nodes.get(match[1]) if match else None

    def name(self, node):
        """The full name of a type or scope."""
        if node is None:
            return "void"
        if node in self.names:
            return self.names[node]
        inner = self.target(node)
        if node.tag in ("pointer_type", "reference_type", "rvalue_reference_type"):
            sign = {"pointer_type": "*", "reference_type": "&"}.get(node.tag, "&&")
            text = self.signature(inner, sign) if inner is not None and inner.tag == "subroutine_type" else \
                self.name(inner) + sign
        elif node.tag in ("const_type", "volatile_type"):
            text = f"{node.tag[:-5]} {self.name(inner)}"
        elif node.tag == "array_type":
            counts = [number(child, "count", number(child, "upper_bound", -1) + 1) for child in node.children]
            text = self.name(inner) + "".join(f"[{count}]" for count in counts)
        elif node.tag == "subroutine_type":
            text = self.signature(node, "")
        elif node.tag == "typedef" and re.fullmatch(r"u?int\d+_t|size_t|bool_t", node.values.get("name", "")):
            text = node.values["name"]
        elif node.tag == "typedef":
            text = self.name(inner)
        else:
            own = node.values.get("name", "(unnamed)")
            scope = node.parent
            inside = scope is not None and scope.tag in ("namespace", "class_type", "structure_type", "union_type")
            text = f"{self.name(scope)}::{own}" if inside else own
        self.names[node] = text
        return text

    def signature(self, node, sign):
        arguments = ", ".join(self.name(self.target(child)) for child in node.children if child.tag == "formal_parameter")
        return f"{self.name(self.target(node))} ({sign})({arguments})"

    def slots(self, node):
        """Slot numbers of a class and its bases, each with the class that declares it. What a helper declares counts as
        its class's own."""
        found = {}
        for child in node.children:
            if child.tag == "inheritance":
                found.update(self.slots(self.target(child)))
        for child in node.children:
            if child.tag == "subprogram" and "virtuality" in child.values and "vtable_elem_location" in child.values:
                found.setdefault(number(child, "vtable_elem_location"), (node, child))
        if not HELPERS.match(self.name(node)):
            found = {slot: (node if HELPERS.match(self.name(owner)) else owner, function)
                     for slot, (owner, function) in found.items()}
        return found

    def members(self, node, offset=0):
        """Offsets of bases and fields, those of helpers among them."""
        lines = []
        for child in node.children:
            place = offset + number(child, "data_member_location")
            if child.tag == "inheritance":
                base = self.target(child)
                if HELPERS.match(self.name(base)):
                    lines += self.members(base, place)
                elif number(base, "byte_size") > 1:
                    lines.append(f"    {place} base {self.name(base)}")
            elif child.tag == "member" and "data_member_location" in child.values and \
                    not child.values["name"].startswith("_vptr"):
                lines.append(f"    {place} {child.values['name']} {self.name(self.target(child))}")
        return lines

    def sections(self):
        classes = {}
        for node in self.nodes.values():
            if node.tag not in ("class_type", "structure_type", "enumeration_type") or "declaration" in node.values or \
                    "name" not in node.values or node.parent.tag == "subprogram":
                continue
            name = self.name(node)
            if name.startswith("zyr::") and "(unnamed)" not in name and not HELPERS.match(name) and \
                    not OTHER_INSTANCES.match(name) and "lambda" not in name:
                classes.setdefault(name, node)
        lines = []
        for name, node in sorted(classes.items()):
            size = number(node, "byte_size")
            if node.tag == "enumeration_type":
                lines.append(f"enum {name} size {size}")
                lines += [f"    {number(child, 'const_value')} {child.values['name']}" for child in node.children]
                continue
            body = self.members(node)
            for slot, (owner, function) in sorted(self.slots(node).items(), key=lambda item: item[0]):
                if owner is node:
                    own = function.values["name"]
                    body.append(f"    slot {slot} {own}|{function.values.get('linkage_name', own)}")
            if body or size > 1:
                lines += [f"class {name} size {size}"] + body
        return lines


def read_headers():
    lines = []
    for folder in HEADERS:
        for header in sorted((ROOT / folder).rglob("*.h")):
            if "implementation" in header.parts:
                continue
            text = re.sub(r"//.*", "", header.read_text(encoding="utf-8"))
            for match in re.finditer(r"^ZYR_(?:TEMPLATE_)?INTERFACE_TRAITS\((\w+), (\w+),\s*\"([-0-9a-f]+)\"", text, re.M):
                lines.append(f"guid {match[3]} {match[1]} extends {match[2]}")
            for match in re.finditer(r"EnumerationTable<(\w+)> \{.*?c_entries\[\] = \{(.*?)\};", text, re.S):
                lines.append(f"texts {match[1]}")
                lines += [f"    {a} {b}" for a, b in re.findall(r"\{(\w+), (\"\w+\")\}", match[2])]
            for match in re.finditer(r"c_typeName = \"(\w+)\";\s*static constexpr auto fields\(\) \{(.*?)\n?    \}\n", text,
                                     re.S):
                lines.append(f"record {match[1]}")
                for part in re.findall(r"zyr_field\(\"\w+\",[^)]*\)(?:\s*\.\w+\([^()]*\))*|zyr_\w+Fields<\w+>", match[2]):
                    key = re.match(r"zyr_field\(\"(\w+)\"", part)
                    with_parts = "".join(" " + re.sub(r"\s+", "", way) for way in re.findall(r"\.(\w+\([^()]*\))", part))
                    lines.append(f"    {key[1] if key else part.split('<')[0]}{with_parts}")
            for match in re.finditer(r"constexpr auto (zyr_\w+Fields)\(\) \{(.*?)\n\}", text, re.S):
                lines.append(f"fields {match[1]}")
                for part in re.findall(r"zyr_field\(\"\w+\",[^)]*\)(?:\s*\.\w+\([^()]*\))*", match[2]):
                    with_parts = "".join(" " + way for way in re.findall(r"\.(\w+\([^()]*\))", part))
                    lines.append("    " + re.match(r"zyr_field\(\"(\w+)\"", part)[1] + with_parts)
    return lines


def read_exports(modules):
    """What all modules export, which is the common library's, and then what each exports besides."""
    exports = {module: {line.split()[-1] for line in read("nm", "-D", "--defined-only", module).splitlines() if line}
               for module in modules}
    shared = set.intersection(*exports.values()) if exports else set()
    lines = ["", "module (each)"] + [f"    {name}" for name in sorted(shared)]
    for module, names in exports.items():
        lines += [f"module {pathlib.Path(module).name}"] + [f"    {name}" for name in sorted(names - shared)]
    return lines


def describe(object_file, modules):
    lines = ["# What separately built modules rely upon in each other. scripts/contract.sh --write writes this file.", ""]
    lines += Layout(object_file).sections() + [""] + read_headers() + read_exports(modules)
    text = read("c++filt", text="\n".join(lines) + "\n")
    # The class that declares an operation is said by the section.
    return re.sub(r"^(    slot \d+ )(.+?)\|(.*)$",
                  lambda match: match[1] + (match[3][match[3].rfind(match[2] + "("):] if match[2] + "(" in match[3]
                                            else match[2]), text, flags=re.M)


def sections_of(text):
    sections, current = {}, None
    for line in text.splitlines():
        if line.startswith(" "):
            sections[current].append(line)
        elif line and not line.startswith("#"):
            current = line
            sections[current] = []
    return sections


def compare(known, present):
    """Lines of the known text that the present one lacks, and lines that are new."""
    gone, new = [], []
    for head, lines in known.items():
        if head not in present:
            gone.append(head)
        else:
            lost = [line for line in lines if line not in present[head]]
            gone += [f"{head}: {line.strip()}" for line in lost]
            kept = [line for line in present[head] if line in lines]
            if not lost and kept != lines:
                gone.append(f"{head}: the order")
    for head, lines in present.items():
        if head not in known:
            new.append(head)
        else:
            new += [f"{head}: {line.strip()}" for line in lines if line not in known[head]]
    return gone, new


def main():
    arguments = sys.argv[1:]
    mode = arguments.pop(0) if arguments and arguments[0] in ("--check", "--write") else ""
    file = pathlib.Path(arguments.pop(0)) if mode else None
    if not arguments or arguments[0].startswith("-"):
        print(__doc__, file=sys.stderr)
        return 2
    text = describe(arguments[0], arguments[1:])
    if mode == "--write":
        file.write_text(text, encoding="utf-8")
    elif mode == "--check":
        gone, new = compare(sections_of(file.read_text(encoding="utf-8")), sections_of(text))
        if new:
            print(*(f"new:  {line}" for line in new[:100]), sep="\n")
            print(f"{len(new)} additions; scripts/contract.sh --write takes them over")
        if gone:
            print(*(f"gone: {line}" for line in gone[:100]), sep="\n")
            print("This breaks modules that were built before: it is a new framework version.")
            return 1
    else:
        print(text, end="")
    return 0


if __name__ == "__main__":
    sys.exit(main())
