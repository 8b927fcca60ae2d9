"""A catalog and its table made from Python, saved, loaded back and computed."""
import datetime
import decimal

import pytest

import qvrcatalog as qvr


def build(folder):
    """A catalog of one chapter with two parts; the first part has a table of two rows."""
    catalog = qvr.Catalog()
    assert catalog.create(f"{folder}/", "Fasteners", "en")
    bolts = catalog.appendChild(catalog.createChapter("Bolts"))
    m8 = bolts.appendChild(catalog.createPart("Hex bolt M8"))
    bolts.appendChild(catalog.createPart("Hex bolt M10"))

    table = qvr.CatalogTable()
    assert table.create(f"{folder}/", "Hex bolts", "en")
    length = table.createColumn(qvr.qvrDataTypeFloat, "Length", "", "", "mm", True)
    density = table.createConstColumn(qvr.qvrDataTypeFloat, "Density", "7.85", "", "", "g/cm3", True)
    mass = table.createCalculatedColumn(qvr.qvrDataTypeFloat, "Mass",
                                        "Round(Length * Density / 10, 2)", "", "", "g", True)
    price = table.createCalculatedColumn(qvr.qvrDataTypeString, "Price", "CCur(Length / 8)",
                                         "", "", "", True)
    for column in (length, density, mass, price):
        table.appendChild(column)
    for row, value in (("M8x20", 20.0), ("M8x40", 40.0)):
        length.appendChild(table.createCell(row, value))
    assert table.saveAs(f"{folder}/hex-bolt-m8.xml")
    m8.attachTable(table)
    m8.setTableLocation(f"{folder}/", "", "hex-bolt-m8.xml")
    assert catalog.saveAs(f"{folder}/catalog.xml")
    return catalog


def test_built_saved_loaded_back_and_computed(tmp_path):
    build(tmp_path)

    catalog = qvr.Catalog()
    assert catalog.load(str(tmp_path / "catalog.xml"))
    assert catalog.name == "Fasteners"
    (bolts,) = catalog.childNodes
    assert isinstance(bolts, qvr.CatalogChapter)
    assert [part.name for part in bolts.childNodes] == ["Hex bolt M8", "Hex bolt M10"]
    m8 = bolts.childNodes[0]
    assert catalog.findById(m8.key).name == "Hex bolt M8"

    table = m8.getTable()
    columns = {column.name: column for column in table.childNodes}
    assert isinstance(columns["Mass"], qvr.TableCalculatedColumn)
    assert isinstance(columns["Density"], qvr.TableConstColumn)
    rows = table.uniqueColumn.childNodes
    assert [row.domNode.text for row in rows] == ["M8x20", "M8x40"]
    assert len(rows) == 2 and rows[-1].key == rows["M8x40"].key

    # Computed per row, by key or by index; Currency comes as Decimal.
    assert columns["Mass"].calculate("M8x40") == pytest.approx(31.4)
    assert columns["Mass"].calculate(1) == pytest.approx(15.7)
    assert columns["Price"].calculate("M8x40") == decimal.Decimal("5")

    # A changed cell is computed with and saved.
    cell = rows["M8x40"].getCell(columns["Length"])
    cell.value = 60
    assert cell.value == 60.0
    assert columns["Mass"].calculate("M8x40") == pytest.approx(47.1)
    assert catalog.save()
    again = qvr.Catalog()
    again.load(str(tmp_path / "catalog.xml"))
    table = again.findById(m8.key).getTable()
    mass = [column for column in table.childNodes if column.name == "Mass"][0]
    assert mass.calculate("M8x40") == pytest.approx(47.1)

    # The catalog's files are listed deep (its part tables), and carried with it.
    tables = [ref.url for ref in again.getReferencedFiles(True) if ref.kind == qvr.qvrPart]
    assert tables == ["hex-bolt-m8.xml"]
    qvr.RelocateCatalog(again, str(tmp_path / "copy"), "catalog.xml")
    copied = qvr.Catalog()
    assert copied.load(str(tmp_path / "copy" / "catalog.xml"))
    table = copied.findById(m8.key).getTable()
    mass = [column for column in table.childNodes if column.name == "Mass"][0]
    assert mass.calculate("M8x40") == pytest.approx(47.1)


def test_values_cross_in_their_python_types(tmp_path):
    catalog = build(tmp_path)
    info = catalog.createOrderInfo(datetime.datetime(2026, 3, 1), None, None)
    assert info.effDate == datetime.datetime(2026, 3, 1)
    assert info.expDate is None  # absent: nothing there
    info.expDate = datetime.date(2027, 12, 31)
    assert info.expDate == datetime.datetime(2027, 12, 31)

    table = catalog.childNodes[0].childNodes[0].getTable()
    cell = table.createCell("M8x20", decimal.Decimal("1.25"))
    assert cell.value == "1.25"  # a cell in no column reads as its text
    assert catalog.getValue("@name") == "Fasteners"
    assert catalog.getValue("@nothing") is None
    column = table.childNodes[1]
    column.visible = False
    assert column.visible is False and column.dataType == qvr.qvrDataTypeFloat
    column.visible = True
    assert column.visible is True
