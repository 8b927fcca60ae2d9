#!/usr/bin/env python3
"""Reads the public headers: every interface, its operations with the names of their in-arguments,
and the comments above each; the enumerations and the statuses. The module takes its docstrings,
argument names, enumerations and constants from here, so the Python face says what the headers say.

    api_docs.py INCLUDE_DIR OUTPUT.h    writes the table the module compiles in
"""
import keyword
import pathlib
import re
import sys

CLASS = re.compile(r"^class QVR_API (I[A-Z]\w*)(?: : public (\w+))? \{")
METHOD = re.compile(r"virtual HRESULT (\w+)\((.*)\)\s*=\s*0;$", re.S)
# An out-argument points at a value; an in-argument that points points at an interface.
OUT_ARGUMENT = re.compile(r"^(Ref<\w+>|String|Variant|VARIANT_BOOL|std::u?int\d+_t|float|[A-Z]\w*)\s*\*\s*\w+$")
IN_INTERFACE = re.compile(r"^I[A-Z]\w*\s*\*\s*\w+$")
ENUM = re.compile(r"^enum (\w+) : std::u?int\d+_t \{")
ENUMERATOR = re.compile(r"^(\w+) = (-?(?:0x[0-9A-Fa-f]+|\d+)),")
STATUS = re.compile(r"^constexpr HRESULT (\w+) = (?:makeStatus\()?(0x[0-9A-Fa-f]+|\d+)\)?;")


class Operation:
    def __init__(self, name, arguments, doc):
        self.name, self.doc = name, doc
        self.ins = [python_name(a.split()[-1].lstrip("*&")) for a in arguments if not is_out(a)]
        self.outs = [a for a in arguments if is_out(a)]


class Interface:
    def __init__(self, name, base, doc):
        self.name, self.base, self.doc = name, base, doc
        self.operations = []


def python_name(name):
    """An argument's name as Python can spell it: a keyword takes a trailing underscore."""
    return name + "_" if keyword.iskeyword(name) else name


def is_out(argument):
    argument = argument.replace("const ", "").strip()
    return bool(OUT_ARGUMENT.match(argument)) and not IN_INTERFACE.match(argument)


def split_arguments(text):
    text = " ".join(text.split())
    return [a.strip() for a in text.split(",")] if text.strip() else []


def comment_text(lines):
    return "\n".join(l.strip()[2:].strip() for l in lines).strip()


def read_values(path, enums, statuses):
    """Adds the enumerations (name: [(enumerator, value)]) and statuses a header declares."""
    current = None
    for line in path.read_text(encoding="utf-8").splitlines():
        line = line.strip()
        if (m := ENUM.match(line)):
            current = enums.setdefault(m[1], [])
        elif current is not None and (m := ENUMERATOR.match(line)):
            current.append((m[1], int(m[2], 0)))
        elif line.startswith("};"):
            current = None
        elif (m := STATUS.match(line)):
            statuses.append((m[1], int(m[2], 0)))


def read_header(path):
    """The interfaces a header declares, in order."""
    lines = path.read_text(encoding="utf-8").splitlines()
    head = []
    for line in lines:
        if not line.startswith("//"):
            break
        head.append(line)
    file_doc = comment_text(head)
    interfaces, current, comment, pending = [], None, [], None
    for line in lines[len(head):]:
        stripped = line.strip()
        if pending is not None:
            pending += " " + stripped
        elif stripped.startswith("//"):
            comment.append(stripped)
            continue
        elif (m := CLASS.match(stripped)):
            current = Interface(m[1], m[2], comment_text(comment) or file_doc)
            interfaces.append(current)
        elif current and stripped.startswith("virtual HRESULT"):
            pending = stripped
        elif stripped == "};":
            current = None
        if pending is not None and pending.endswith(";"):
            m = METHOD.search(pending)
            if m and current:
                current.operations.append(Operation(m[1], split_arguments(m[2]), comment_text(comment)))
            pending = None
        comment = []
    return interfaces


def read_headers(include_dir):
    """The interfaces, the enumerations and the statuses of the headers in `include_dir`."""
    interfaces, enums, statuses = [], {}, []
    for header in sorted(pathlib.Path(include_dir).glob("*.h")):
        interfaces += read_header(header)
        read_values(header, enums, statuses)
    return interfaces, enums, statuses


def cpp_text(text):
    return 'R"doc(' + text + ')doc"'


def write_table(interfaces, enums, statuses, output):
    rows = []
    for i in interfaces:
        rows.append(f'    {{"{i.name}", "", "", {cpp_text(i.doc)}}},')
        for op in i.operations:
            rows.append(f'    {{"{i.name}", "{op.name}", "{",".join(op.ins)}", {cpp_text(op.doc)}}},')
    text = ("// Written by python/api_docs.py from the public headers.\n#pragma once\n\n"
            "namespace qvrpy {\n\nstruct ApiDoc {\n    const char* interface;\n"
            "    const char* member; // empty for the interface itself\n"
            "    const char* arguments; // the in-arguments' names, comma-separated\n"
            "    const char* doc;\n};\n\ninline constexpr ApiDoc kApiDocs[] = {\n"
            + "\n".join(rows) + "\n};\n\n"
            "struct ApiValue {\n    const char* group; // the enumeration, or \"HRESULT\"\n"
            "    const char* name;\n    long long value;\n};\n\n"
            "inline constexpr ApiValue kApiValues[] = {\n"
            + "\n".join(f'    {{"{e}", "{n}", {v}}},' for e, values in enums.items() for n, v in values)
            + "\n"
            + "\n".join(f'    {{"HRESULT", "{n}", {v}}},' for n, v in statuses)
            + "\n};\n\n} // namespace qvrpy\n")
    out = pathlib.Path(output)
    if not out.exists() or out.read_text(encoding="utf-8") != text:
        out.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    write_table(*read_headers(sys.argv[1]), sys.argv[2])
