#!/usr/bin/env python3
"""Runs examples/lookup_part.cpp as docs/example.md tells (or the same request written in
another language, such as examples/python/lookup_part.py): against the folder that
`qvr-demo --keep` leaves, with the id of the part "Hex bolt M8".

    run_lookup_example.py QVR_DEMO LOOKUP_PART [ARGUMENT...]

The catalog's path and the part's id follow the command LOOKUP_PART ARGUMENT....
"""
import pathlib
import re
import shutil
import subprocess
import sys


def main():
    demo, lookup = sys.argv[1], sys.argv[2:]
    shown = subprocess.run([demo, "--keep"], check=True, capture_output=True, text=True).stdout
    folder = pathlib.Path(re.search(r"^Working in (.+)$", shown, re.M).group(1))
    try:
        catalog = folder / "catalog.xml"
        part_id = re.search(r'<Part id="([^"]+)" name="Hex bolt M8"', catalog.read_text()).group(1)
        run = subprocess.run([*lookup, str(catalog), part_id], capture_output=True, text=True)
        print(run.stdout, end="")
        if run.returncode != 0 or "Mass of M8x40: 15.8 g\n" not in run.stdout:
            return 1
        # It set the stock of M8x40 to 250 and saved the table.
        table = (folder / "hex-bolt-m8.xml").read_text()
        row = re.search(r'<RowUnique id="([^"]+)">M8x40<', table).group(1)
        if f'<Row idref="{row}">250</Row>' not in table:
            print("the changed stock of M8x40 was not saved")
            return 1
    finally:
        shutil.rmtree(folder)
    return 0


if __name__ == "__main__":
    sys.exit(main())
