#!/usr/bin/env python3
"""Installs BUILD_DIR into a fresh prefix and runs the Python example against the module found
there, with its type stubs beside it.

    installed_module.py BUILD_DIR PYTHON_DIR QVR_DEMO SOURCE_DIR
"""
import os
import pathlib
import subprocess
import sys
import tempfile


def main():
    build, python_dir, demo, source = sys.argv[1:5]
    with tempfile.TemporaryDirectory() as prefix:
        subprocess.run(["cmake", "--install", build, "--prefix", prefix], check=True,
                       stdout=subprocess.DEVNULL)
        folder = pathlib.Path(prefix) / python_dir
        stubs = list(folder.glob("qvrcatalog*.pyi"))
        modules = list(folder.glob("qvrcatalog*.so"))
        if len(stubs) != 1 or len(modules) != 1:
            sys.exit(f"{folder} holds {sorted(p.name for p in folder.iterdir())}")
        env = dict(os.environ, PYTHONPATH=str(folder))
        run = subprocess.run(
            [sys.executable, f"{source}/tests/docs/run_lookup_example.py", demo, sys.executable,
             f"{source}/examples/python/lookup_part.py"], env=env)
        return run.returncode


if __name__ == "__main__":
    sys.exit(main())
