"""The typical request from Python: load a catalog, find a part by its id, compute a value of
its table, change a cell, save.

    python3 lookup_part.py catalog.xml PART-ID
"""
import sys

import qvrcatalog


def main(catalog_file, part_id):
    catalog = qvrcatalog.Catalog()
    catalog.load(catalog_file)
    part = catalog.findById(part_id)
    table = part.getTable()  # loaded from the file the part refers to

    columns = {column.name: column for column in table.childNodes}
    print("columns:", ", ".join(name for name in columns if name))
    mass = columns["Mass"].calculate("M8x40")  # the formula at the row whose key is M8x40
    print(f"Mass of M8x40: {mass} g")

    row = table.uniqueColumn.childNodes["M8x40"]
    row.getCell(columns["Stock"]).value = 250
    catalog.save()  # the open tables, then the catalog


if __name__ == "__main__":
    try:
        main(sys.argv[1], sys.argv[2])
    except qvrcatalog.Error as error:
        sys.exit(f"failed: {error}")
