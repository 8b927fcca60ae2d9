#!/usr/bin/env python3
"""Writes the type stubs of the built module from what it holds: its classes with their bases,
properties and methods, its functions, enumerations and constants, each with the signature
pybind11 records and the docstring taken from the headers.

    make_stub.py MODULE_DIR OUTPUT.pyi
"""
import importlib
import inspect
import re
import sys

SIGNATURE = re.compile(r"^(\w+)\((.*)\) -> (.+)$")


def clean(text):
    """A type or argument list as the stub spells it: names of this module without its prefix,
    default values as `...`."""
    text = text.replace("qvrcatalog.", "")
    text = re.sub(r"^self: [\w.]+", "self", text)
    text = re.sub(r"(\w+: [\w\[\], .]+?) = [^,]+?(?=, \w+:|$)", r"\1 = ...", text)
    return text


def signatures(function):
    """The (arguments, result) of each overload pybind11 recorded in the docstring."""
    doc = function.__doc__ or ""
    found = []
    for line in doc.splitlines():
        line = re.sub(r"^\d+\. ", "", line.strip())
        m = SIGNATURE.match(line)
        if m and m[1] == function.__name__:
            found.append((clean(m[2]), clean(m[3])))
    return found


def doc_of(function):
    """The docstring without the signatures pybind11 puts first."""
    lines = [l for l in (function.__doc__ or "").splitlines()
             if not SIGNATURE.match(re.sub(r"^\d+\. ", "", l.strip()))
             and l.strip() != "Overloaded function." and not l.endswith("(*args, **kwargs)")]
    return "\n".join(lines).strip()


def docstring(text, indent):
    if not text:
        return ""
    text = text.replace("\\", "\\\\").replace('"""', '\\"\\"\\"')
    body = "\n".join((indent + l) if l.strip() else "" for l in text.splitlines())
    return f'{indent}"""\n{body}\n{indent}"""\n'


# The classes of objects: an argument of one of them may also be None (no object).
OBJECT_CLASSES = set()


def may_be_none(arguments):
    return re.sub(r"(\w+): (\w+)(?=,|$| =)",
                  lambda m: f"{m[1]}: Optional[{m[2]}]" if m[2] in OBJECT_CLASSES else m[0], arguments)


def may_be_none_result(result):
    """An object handed out may be none: where the library finds nothing there."""
    return f"Optional[{result}]" if result in OBJECT_CLASSES else result


def function_stub(function, indent, static=False):
    out = []
    sigs = [(may_be_none(arguments), may_be_none_result(result))
            for arguments, result in signatures(function)]
    if not sigs and function.__name__ == "__init__":
        return ""  # a class that Python code does not make
    for arguments, result in sigs or [("*args, **kwargs", "Any")]:
        if len(sigs) > 1:
            out.append(f"{indent}@overload\n")
        if static:
            out.append(f"{indent}@staticmethod\n")
        out.append(f"{indent}def {function.__name__}({arguments}) -> {result}:\n")
        out.append(docstring(doc_of(function), indent + "    ") or f"{indent}    ...\n")
    return "".join(out)


def property_stub(name, prop, indent):
    result = "Any"
    getter = (prop.fget or prop.fset).__doc__ or ""
    if (m := re.match(r"^\((.*)\) -> (.+)$", getter.splitlines()[0] if getter else "")):
        result = may_be_none_result(clean(m[2])) if prop.fget else clean(m[1].split(", ", 1)[-1].split(": ", 1)[-1])
    out = [f"{indent}@property\n", f"{indent}def {name}(self) -> {result}:\n",
           docstring(prop.__doc__ or "", indent + "    ") or f"{indent}    ...\n"]
    if prop.fset is not None:
        value = result
        setter = (prop.fset.__doc__ or "").splitlines()
        if setter and (m := re.match(r"^\(\w+: [\w.]+, \w+: (.+)\) -> .+$", setter[0])):
            value = may_be_none(f"value: {clean(m[1])}")
        else:
            value = f"value: {value}"
        out += [f"{indent}@{name}.setter\n", f"{indent}def {name}(self, {value}) -> None: ...\n"]
    return "".join(out)


def is_enum(cls):
    return hasattr(cls, "__members__") and hasattr(cls, "value")


def class_stub(cls):
    bases = [b.__name__ for b in cls.__bases__ if b.__module__ == "qvrcatalog"]
    if is_enum(cls):
        out = [f"class {cls.__name__}(int):\n"]
        out += [f"    {name}: ClassVar[{cls.__name__}]\n" for name in cls.__members__]
        return "".join(out) + "\n"
    if issubclass(cls, Exception):
        return (f"class {cls.__name__}(Exception):\n" + docstring(cls.__doc__ or "", "    ")
                + "    status: int\n    message: str\n    source: Optional[str]\n"
                "    interface: Optional[str]\n\n")
    out = [f"class {cls.__name__}({', '.join(bases)}):\n" if bases else f"class {cls.__name__}:\n",
           docstring(cls.__doc__ or "", "    ")]
    for name, member in sorted(cls.__dict__.items()):
        if isinstance(member, property):
            out.append(property_stub(name, member, "    "))
        elif isinstance(member, staticmethod):
            out.append(function_stub(member.__func__, "    ", static=True))
        elif callable(member) and (not name.startswith("__") or name in (
                "__init__", "__len__", "__iter__", "__next__", "__getitem__", "__enter__", "__exit__", "__repr__")):
            out.append(function_stub(member, "    "))
    if not "".join(out[1:]):
        out.append("    ...\n")
    return "".join(out) + "\n"


def main():
    sys.path.insert(0, sys.argv[1])
    module = importlib.import_module("qvrcatalog")
    out = ["# Type stubs of the qvrcatalog module, written from the module by make_stub.py.\n",
           "from typing import Any, ClassVar, Iterator, List, Optional, Tuple, overload\n\n"]
    classes = [v for v in vars(module).values() if inspect.isclass(v) and v.__module__ in ("qvrcatalog", "builtins")
               and (v.__module__ == "qvrcatalog" or issubclass(v, Exception))]
    OBJECT_CLASSES.update(c.__name__ for c in classes if issubclass(c, module.Unknown))
    done = set()

    def emit(cls):
        if cls in done:
            return
        for base in cls.__bases__:
            if base in classes:
                emit(base)
        done.add(cls)
        out.append(class_stub(cls))

    for cls in classes:
        emit(cls)
    for name, value in sorted(vars(module).items()):
        if name.startswith("__") or inspect.isclass(value):
            continue
        if callable(value):
            out.append(function_stub(value, ""))
        elif is_enum(type(value)):
            out.append(f"{name}: {type(value).__name__}\n")
        else:
            out.append(f"{name}: {type(value).__name__}\n")
    with open(sys.argv[2], "w", encoding="utf-8") as f:
        f.write("".join(out))


if __name__ == "__main__":
    main()
