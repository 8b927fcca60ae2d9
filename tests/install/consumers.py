#!/usr/bin/env python3
"""Uses the library the three ways a project outside this tree can, and runs what it builds.

    consumers.py BUILD_DIR SOURCE_DIR LIBDIR

1. installs BUILD_DIR into a fresh prefix and builds examples/build_catalog.cpp against it with
   examples/consumer/find_package/CMakeLists.txt;
2. the same with examples/consumer/pkg-config/Makefile;
3. builds it with examples/consumer/add_subdirectory/CMakeLists.txt over SOURCE_DIR, the library
   shared, and checks that the shared library exports no name the public headers do not declare.
   This build lives in BUILD_DIR/consumers, so that a later run rebuilds only what changed.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

EXPECTED = "Fasteners\n  Bolts\n"


def run(*command, **options):
    print("$", " ".join(str(c) for c in command), flush=True)
    return subprocess.run([str(c) for c in command], check=True, text=True, **options)


def consumer_project(source, way, folder):
    """A project folder holding the example program and the build file of one way to link."""
    folder.mkdir(parents=True, exist_ok=True)
    shutil.copy(source / "examples" / "build_catalog.cpp", folder)
    for build_file in (source / "examples" / "consumer" / way).iterdir():
        shutil.copy(build_file, folder)
    return folder


def check_program(program, work):
    output = run(program, work / "catalog", capture_output=True).stdout
    if output != EXPECTED:
        sys.exit(f"{program} printed {output!r}, expected {EXPECTED!r}")


def cmake_build(project, *options):
    build = project / "build"
    run("cmake", "-S", project, "-B", build, "-G", "Ninja", *options)
    run("cmake", "--build", build, "--target", "build_catalog")
    return build


def exported_names_outside_headers(library, source):
    """Names of the library's own namespace that the shared library exports but that no public
    header declares."""
    symbols = run("nm", "-D", "--defined-only", "-C", library, capture_output=True).stdout
    headers = "".join(p.read_text() for p in (source / "include" / "qvr").glob("*.h"))
    declared = set(re.findall(r"\b\w+\b", headers))
    exported = set(re.findall(r"\bqvr::(\w+)", symbols))
    return sorted(name for name in exported if name not in declared)


def main():
    build_dir, source, libdir = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
    with tempfile.TemporaryDirectory(prefix="qvr-consumers-") as temp:
        work = pathlib.Path(temp)
        prefix = work / "prefix"
        run("cmake", "--install", build_dir, "--prefix", prefix, stdout=subprocess.DEVNULL)

        project = consumer_project(source, "find_package", work / "find_package")
        build = cmake_build(project, f"-DCMAKE_PREFIX_PATH={prefix}")
        check_program(build / "build_catalog", work)

        project = consumer_project(source, "pkg-config", work / "pkg-config")
        env = dict(os.environ, PKG_CONFIG_PATH=str(prefix / libdir / "pkgconfig"))
        run("make", "-C", project, env=env)
        check_program(project / "build_catalog", work)

        project = consumer_project(source, "add_subdirectory", build_dir / "consumers" / "add_subdirectory")
        link = project / "qvrcatalog"
        if not link.is_symlink():
            link.symlink_to(source.resolve(), target_is_directory=True)
        build = cmake_build(project, "-DBUILD_SHARED_LIBS=ON")
        check_program(build / "build_catalog", work)
        targets = run("cmake", "--build", build, "--target", "help", capture_output=True).stdout
        if re.search(r"\btest_\w+", targets):
            sys.exit("a project that adds the library as a subdirectory gets its tests")
        library = next((build / "qvrcatalog" / "src").glob("libqvrcatalog.so"))
        leaked = exported_names_outside_headers(library, source)
        if leaked:
            sys.exit(f"{library} exports names no public header declares: {', '.join(leaked)}")
    print("find_package, pkg-config and add_subdirectory all build and run the example")


if __name__ == "__main__":
    main()
