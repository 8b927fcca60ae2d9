#!/usr/bin/env python3
"""Runs qvrcat on the catalog that `qvr-demo --keep` builds, one group of behaviours per run.

    qvrcat_test.py QVRCAT QVR_DEMO GROUP

GROUP is one of: session, json, errors, freeze, transfer, files. Each group works in a copy
of the demo's folder of its own and prints what differed; the exit status is 1 on any failure.
"""
import hashlib
import json
import os
import pathlib
import pty
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).parent
GUID = re.compile(r"[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}")
failures = []


def expect(condition, what):
    if not condition:
        failures.append(what)


class Folder:
    """A copy of the demo's catalog in a temporary folder, and qvrcat run inside it."""

    def __init__(self, qvrcat, demo, work):
        shown = subprocess.run([demo, "--keep"], check=True, capture_output=True, text=True).stdout
        kept = pathlib.Path(re.search(r"^Working in (.+)$", shown, re.M).group(1))
        self.path = pathlib.Path(work) / "demo"
        shutil.move(str(kept), self.path)
        self.qvrcat = qvrcat

    def run(self, *args, status=0):
        done = subprocess.run([self.qvrcat, *args], cwd=self.path, capture_output=True, text=True)
        expect(done.returncode == status,
               f"qvrcat {shlex.join(args)}: status {done.returncode}, not {status}: {done.stderr}")
        # Standard error is no terminal here: no progress bar, and nothing at all on success.
        expect(status != 0 or done.stderr == "", f"qvrcat {shlex.join(args)}: {done.stderr!r}")
        return done

    def json(self, *args, status=0):
        return json.loads(self.run(*args, "--json", status=status).stdout)

    def refused(self, args, message):
        """A refusal: status 1, one line on standard error holding `message`, no file changed."""
        before = self.digest()
        done = self.run(*args, status=1)
        expect(done.stderr.count("\n") == 1 and message in done.stderr,
               f"qvrcat {shlex.join(args)}: said {done.stderr!r}, not {message!r}")
        expect(self.digest() == before, f"qvrcat {shlex.join(args)} changed a file")

    def digest(self, folder=None):
        folder = folder or self.path
        return {p.relative_to(folder): hashlib.sha256(p.read_bytes()).hexdigest()
                for p in sorted(folder.rglob("*")) if p.is_file()}

    def write(self, name, text):
        (self.path / name).write_text(text, encoding="utf-8", newline="")


def session(folder):
    """The session the README shows: each command's text against what the file says."""
    script = (HERE / "qvrcat_session.txt").read_text()
    for block in re.split(r"^\$ ", script, flags=re.M)[1:]:
        command, _, expected = block.partition("\n")
        args = shlex.split(command)[1:]
        shown = folder.run(*args).stdout
        expect(shown.replace("\r\n", "\n") == expected, f"$ {command}\n{shown}---\n{expected}")


def json_output(folder):
    """Every read command's JSON: the same facts as its text, typed."""
    info = folder.json("info", "catalog.xml")
    expect(info["parts"] == 4 and info["tables"] == 4 and info["rows"] == 10 and
           info["columns"] == {"plain": 16, "const": 4, "calculated": 8, "reference": 0,
                               "view": 0, "const view": 0}, f"info: {info}")
    tree = GUID.sub("ID", json.dumps(folder.json("tree", "catalog.xml")))
    expect('{"type": "part", "name": "Socket screw M6", "id": "ID", "table": '
           '"socket-screw-m6.xml"}' in tree and tree.count('"type": "chapter"') == 3, tree)
    table = folder.json("table", "-c", "catalog.xml", "Hex bolt M8")
    expect(table["rows"][1] == {"row_id": "M8x40", "Thread": "M8", "Length": 40, "Diameter": 8.0,
                                "Stock": 0, "Density": 7.85, "Mass": 15.8,
                                "Designation": "M8 x 40"}, f"table: {table['rows']}")
    expect(table["columns"][5] == {"name": "Mass", "kind": "calculated", "type": "float",
                                   "unit": "g", "expression": "Round(3.14159 * (Diameter / 2) ^ 2"
                                   " * Length * Density / 1000, 1)"}, f"{table['columns']}")
    calc = folder.json("calc", "hex-bolt-m8.xml", "Designation", "M8x20", "M8x60")
    expect(calc == [{"row": "M8x20", "value": "M8 x 20"}, {"row": "M8x60", "value": "M8 x 60"}],
           f"calc: {calc}")


def errors(folder):
    """Usage errors give 2; bad input gives 1 and a line naming what and where."""
    for args in (["nonsense"], ["info"], ["calc", "hex-bolt-m8.xml", "Mass"],
                 ["export", "hex-bolt-m8.xml"], ["export", "hex-bolt-m8.xml", "--csv", "--json"],
                 ["info", "catalog.xml", "--bogus"]):
        folder.run(*args, status=2)
    expect(folder.run("--help").stdout.count("\n  ") >= 10, "help lists the commands")
    folder.write("broken.xml", "<vCAT name='x'>")
    folder.refused(["info", "absent.xml"], "absent.xml: no such file")
    folder.refused(["tree", "broken.xml"], "broken.xml: XML parse error:")
    folder.refused(["info", "hex-bolt-m8.xml"], "is not an vCATCatalog file")
    folder.refused(["table", "-c", "catalog.xml", "Hex nut"],
                   'catalog.xml: no part with the id, name or table file "Hex nut"')
    folder.refused(["calc", "-c", "catalog.xml", "hex-bolt-m10.xml", "Weight", "M10x30"],
                   'part "Hex bolt M10" (hex-bolt-m10.xml): no column "Weight"')
    folder.refused(["calc", "hex-bolt-m8.xml", "Mass", "M8x20", "M8x99"],
                   'hex-bolt-m8.xml: no row "M8x99"')
    # A formula the engine refuses: the table shows the others and names the cell.
    table = (folder.path / "socket-screw-m6.xml").read_text()
    folder.write("socket-screw-m6.xml", table.replace('expression="Round(', 'expression="1 / 0 + Round('))
    shown = folder.run("table", "socket-screw-m6.xml", status=1)
    expect(re.search(r"^M6x16 +M6 +16 .* #error ", shown.stdout, re.M) and
           'column "Mass", row "M6x16": Division by zero' in shown.stderr, shown.stderr)


def freeze(folder):
    """One calculated column, then all of them; the values stay, the formulas go. A terminal
    sees the progress."""
    before = folder.json("table", "hex-bolt-m8.xml")["rows"]
    terminal, other = pty.openpty()
    done = subprocess.run([folder.qvrcat, "freeze", "hex-bolt-m10.xml"], cwd=folder.path,
                          stderr=other, stdout=subprocess.DEVNULL)
    os.close(other)
    shown = os.read(terminal, 4096).decode()
    os.close(terminal)
    expect(done.returncode == 0 and "freezing hex-bolt-m10.xml [" in shown and "100%" in shown,
           f"progress: {shown!r}")
    folder.refused(["freeze", "hex-bolt-m8.xml", "Stock"], 'column "Stock" is not calculated')
    folder.run("freeze", "hex-bolt-m8.xml", "Mass")
    kinds = [c["kind"] for c in folder.json("table", "hex-bolt-m8.xml")["columns"]]
    expect(kinds == ["plain"] * 4 + ["const", "plain", "calculated"], f"one frozen: {kinds}")
    folder.run("freeze", "-c", "catalog.xml", "Hex bolt M8")
    after = folder.json("table", "hex-bolt-m8.xml")
    expect(after["rows"] == before and "calculated" not in str(after["columns"]),
           f"all frozen: {after}")


def transfer(folder):
    """Export and import: round trips leave the table as it was; a bad line changes nothing."""
    table = folder.path / "hex-bolt-m8.xml"
    original = table.read_bytes()
    for form in ("csv", "json"):
        folder.run("export", "hex-bolt-m8.xml", f"--{form}", "-o", f"m8.{form}")
        folder.run("import", f"m8.{form}", "hex-bolt-m8.xml")
        expect(table.read_bytes() == original, f"{form} round trip changed the table")
    # Quoted commas, quotes and line breaks, a byte-order mark, a new row and a changed cell.
    folder.write("more.csv", '\ufeffrow_id,Thread,Stock\r\nM8x40,M8,75\r\n'
                             '"M8 ""x"" 90","M8, long\nfine",\r\n')
    folder.run("import", "more.csv", "-c", "catalog.xml", "Hex bolt M8")
    rows = json.loads(folder.run("export", "hex-bolt-m8.xml", "--json").stdout)["rows"]
    expect(rows[1]["Stock"] == 75 and rows[3] == {"row_id": 'M8 "x" 90', "Thread": "M8, long\nfine"},
           f"imported: {rows}")
    folder.run("export", "hex-bolt-m8.xml", "--csv", "-o", "now.csv")
    folder.run("import", "now.csv", "hex-bolt-m8.xml")
    folder.run("export", "hex-bolt-m8.xml", "--json", "-o", "now.json")
    folder.run("import", "now.json", "hex-bolt-m8.xml")
    folder.run("export", "hex-bolt-m8.xml", "--csv", "-o", "again.csv")
    expect((folder.path / "now.csv").read_bytes() == (folder.path / "again.csv").read_bytes(),
           "a new row does not come back as it went")
    bad = {
        "type.csv": ("row_id,Length\nM8x20,25\nM8x30,thirty\n", 'line 3: column "Length": '
                     '"thirty" is not an int'),
        "width.csv": ("row_id,Length\nM8x20,25,1\n", "line 2: 3 fields where the header has 2"),
        "calc.csv": ("row_id,Mass\nM8x20,1\n", 'line 1: column "Mass" is calculated'),
        "key.csv": ("Thread\nM8\n", 'line 1: no column "row_id"'),
        "quote.csv": ('row_id,Thread\nM8x20,"M8\n', "line 2: a quoted field is not closed"),
        "type.json": ('{"rows": [\n {"row_id": "M8x20", "Length": 25},\n {"row_id": "M8x30",'
                      '\n  "Length": 2.5}]}', 'line 3: row "M8x30", column "Length": 2.5 is not '
                      'an int'),
        "column.json": ('[{"row_id": "M8x20", "Colour": "red"}]', 'line 1: no column "Colour"'),
        "syntax.json": ('[{"row_id": "M8x20",}]', "parse error at line 1"),
    }
    for name, (content, message) in bad.items():
        folder.write(name, content)
        folder.refused(["import", name, "hex-bolt-m8.xml"], f"{name}: {message}")


def files(folder):
    """files lists each pointer and whether its file is there; check finds each problem; copy
    makes a folder that checks, and leaves the source as it was."""
    catalog = folder.path / "catalog.xml"
    text = catalog.read_text()
    at = text.index("<Desc/>", text.index('name="Hex bolt M8"')) + len("<Desc/>")
    catalog.write_text(text[:at] + '<Images><Image><URL xlink:href="images/m8.png" '
                       'xlink:type="simple"/></Image></Images>' + text[at:])
    (folder.path / "images").mkdir()
    (folder.path / "images" / "m8.png").write_bytes(b"\x89PNG")
    table = folder.path / "hex-bolt-m8.xml"
    row = re.search(r'<RowUnique id="([^"]+)">M8x20<', table.read_text()).group(1)
    table.write_text(table.read_text().replace(
        "</vCATTable>", f'<ColumnView id="Cfront" viewKey="front" viewName="Front"><Drawing '
        f'idref="{row}">drawings/m8x20.dxf</Drawing></ColumnView></vCATTable>'))
    (folder.path / "drawings").mkdir()
    (folder.path / "drawings" / "m8x20.dxf").write_text("0\nEOF\n")

    listed = folder.json("files", "catalog.xml")
    kinds = sorted((f["kind"], f["url"], f["state"]) for f in listed)
    expect(("image", "images/m8.png", "ok") in kinds and
           ("drawing", "drawings/m8x20.dxf", "ok") in kinds and
           sum(k == "table" for k, _, _ in kinds) == 4, f"files: {kinds}")
    source = folder.digest()
    folder.run("copy", "catalog.xml", "../copy")
    copy = folder.path.parent / "copy"
    expect(folder.digest() == source, "copy changed the source")
    expect(set(folder.digest(copy)) == set(source), f"copied: {sorted(folder.digest(copy))}")
    folder.run("check", str(copy / "catalog.xml"))
    folder.refused(["copy", "catalog.xml", "../copy"], "exists and is not an empty folder")

    (folder.path / "drawings" / "m8x20.dxf").unlink()
    (folder.path / "socket-screw-m6.xml").unlink()
    table = folder.path / "hex-bolt-m10.xml"
    table.write_text(table.read_text().replace('expression="Round(', 'expression="1 / 0 + Round('))
    missing = folder.run("files", "catalog.xml", status=1).stdout
    expect(re.findall(r"^(\w+) .* missing ", missing, re.M) == ["drawing", "table"], missing)
    report = folder.json("check", "catalog.xml", status=1)
    places = sorted(p["place"] for p in report["problems"])
    expect(len(places) == 4 and places[0].endswith(
        'drawing "drawings/m8x20.dxf" of view "Front" in hex-bolt-m8.xml') and
        places[1].endswith('(hex-bolt-m10.xml): column "Mass", row "M10x30"') and
        places[3].endswith('part "Socket screw M6" (socket-screw-m6.xml)'), f"check: {report}")
    folder.refused(["copy", "catalog.xml", "../other"], "drawings/m8x20.dxf")
    expect(not (folder.path.parent / "other").exists(), "a refused copy left a folder")


def main():
    qvrcat, demo, group = sys.argv[1:4]
    with tempfile.TemporaryDirectory() as work:
        folder = Folder(qvrcat, demo, work)
        {"session": session, "json": json_output, "errors": errors, "freeze": freeze,
         "transfer": transfer, "files": files}[group](folder)
    for failure in failures:
        print(failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
