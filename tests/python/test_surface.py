"""Every operation of the public headers has its Python face, the stubs name it, and a script
that ends leaves no object of the library alive."""
import ast
import keyword
import os
import pathlib
import subprocess
import sys

import qvrcatalog as qvr

SOURCE = pathlib.Path(__file__).resolve().parents[2]

# Interfaces that Python does not call through: sinks are Python callables, the table cache's
# getTableAs is a method of its list, and the data object's advise connections and format
# enumerators have their Python form in GetData/EnumFormatEtc.
NOT_BOUND = {"IQVRCatalogEvents", "IQVRCatalogObjectTableCache", "ISupportErrorInfo",
             "IEnumFORMATETC", "IEnumSTATDATA", "IAdviseSink"}
NOT_BOUND_OPERATIONS = {"DAdvise", "DUnadvise", "EnumDAdvise"}


def headers():
    # The same reader of the headers that makes the module's docstrings.
    sys.path.insert(0, str(SOURCE / "python"))
    import api_docs
    return api_docs.read_headers(SOURCE / "include" / "qvr")[0]


def python_name(interface):
    return interface[4:] if interface.startswith("IQVR") else interface[1:]


def test_every_operation_has_a_python_face():
    missing = []
    for interface in headers():
        if interface.name in NOT_BOUND:
            continue
        cls = getattr(qvr, python_name(interface.name))
        for op in interface.operations:
            name = op.name
            for prefix in ("get_", "putref_", "put_"):
                if name.startswith(prefix):
                    name = name[len(prefix):]
                    break
            if keyword.iskeyword(name):
                name += "_"
            if op.name not in NOT_BOUND_OPERATIONS and not hasattr(cls, name):
                missing.append(f"{interface.name}.{op.name}")
    assert missing == []
    # The docstrings are the headers' comments.
    assert "Two lower-case letters" in qvr.Catalog.language.__doc__
    assert qvr.CatalogPart.getTable.__doc__.startswith("getTable(self: qvrcatalog.CatalogPart, reserved: int = 0)")


def test_stubs_name_every_class():
    stub = pathlib.Path(qvr.__file__).with_name("qvrcatalog.pyi").read_text()
    tree = ast.parse(stub)
    classes = {node.name: node for node in tree.body if isinstance(node, ast.ClassDef)}
    assert {"Catalog", "CatalogPart", "TableCalculatedColumn", "XMLDOMDocument", "Error"} <= set(classes)
    assert "def calculate(self, row: Any) -> Any:" in stub
    assert "def name(self) -> Optional[str]:" in stub


SCRIPT = """
import gc, sys, tempfile
import qvrcatalog as qvr

def work(folder):
    catalog = qvr.Catalog()
    catalog.create(folder + "/", "Fasteners", "en")
    with catalog:
        catalog.advise(lambda event, obj, extra: catalog.name)  # a cycle through the sink
        part = catalog.appendChild(catalog.createChapter("Bolts")).appendChild(catalog.createPart("M8"))
        table = qvr.CatalogTable()
        table.create(folder + "/", "Bolts", "en")
        column = table.appendChild(table.createColumn(qvr.qvrDataTypeInt, "Length", "", "", "mm", True))
        column.appendChild(table.createCell("M8x20", 20))
        table.saveAs(folder + "/m8.xml")
        part.attachTable(table)
        rows = [row.domNode.xml for row in table.uniqueColumn.childNodes]
        items = list(catalog.childNodes._NewEnum)
        packet = qvr.CoMarshalInterface(part)
        qvr.CoReleaseMarshalData(packet)
        catalog.saveAs(folder + "/catalog.xml")
        try:
            catalog.language = "English"
        except qvr.Error:
            pass
    return rows, items

with tempfile.TemporaryDirectory() as folder:
    work(folder)
gc.collect()
sys.exit(0 if qvr.CanUnloadNow() and qvr.DllCanUnloadNow() else 1)
"""


def test_no_library_object_outlives_the_script():
    run = subprocess.run([sys.executable, "-c", SCRIPT], capture_output=True, text=True,
                         env=dict(os.environ))
    assert run.returncode == 0, run.stderr
