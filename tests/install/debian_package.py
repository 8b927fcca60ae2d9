#!/usr/bin/env python3
"""Makes the Debian package of BUILD_DIR with cpack, checks what it holds and declares, installs
it with dpkg, runs its tools from the system's paths, and removes it again.

    debian_package.py BUILD_DIR

Installing into the system needs root: run as another user it only builds and inspects the
package, and reports itself skipped (77). A machine that already has the package installed
is left alone the same way.
"""
import pathlib
import subprocess
import sys
import tempfile

PACKAGE = "qvrcatalog"
SKIPPED = 77


def run(*command, **options):
    print("$", " ".join(str(c) for c in command), flush=True)
    return subprocess.run([str(c) for c in command], check=True, text=True, **options)


def output(*command, **options):
    return run(*command, capture_output=True, **options).stdout


def installed():
    status = subprocess.run(["dpkg-query", "-W", "-f=${Status}", PACKAGE],
                            capture_output=True, text=True).stdout
    return "install ok installed" in status


def check_package(deb):
    info = output("dpkg-deb", "-I", deb)
    depends = next((l for l in info.splitlines() if l.strip().startswith("Depends:")), "")
    for needed in ("libxml2", "libicu"):
        if needed not in depends:
            sys.exit(f"the package does not declare {needed}: {depends!r}")
    contents = output("dpkg-deb", "-c", deb)
    for path in ("./usr/bin/vbs-eval", "./usr/bin/qvr-demo", "./usr/include/qvr/qvr.h",
                 "/cmake/qvrcatalog/qvrcatalogConfig.cmake",
                 "/cmake/qvrcatalog/qvrcatalogConfigVersion.cmake",
                 "/pkgconfig/qvrcatalog.pc", "/libqvrcatalog."):
        if path not in contents:
            sys.exit(f"the package holds no {path}")


def try_installed_package():
    """Runs what the installed package offers, from the system's own paths."""
    result = output("vbs-eval", input='Round(Sqr(3^2 + 4^2), 2) & " mm"\n')
    if result != '8\t"5 mm"\n':
        sys.exit(f"vbs-eval from the package answered {result!r}")
    if pathlib.Path("/usr/bin/qvrcat").exists():
        run("qvrcat", "--help", stdout=subprocess.DEVNULL)
    version = output("pkg-config", "--modversion", PACKAGE).strip()
    prefix = output("pkg-config", "--variable=prefix", PACKAGE).strip()
    if prefix != "/usr" or not version:
        sys.exit(f"pkg-config finds {PACKAGE} {version!r} under {prefix!r}, expected /usr")


def main():
    build_dir = pathlib.Path(sys.argv[1])
    with tempfile.TemporaryDirectory(prefix="qvr-deb-") as temp:
        run("cpack", "-G", "DEB", "--config", build_dir / "CPackConfig.cmake", "-B", temp,
            stdout=subprocess.DEVNULL)
        deb = next(pathlib.Path(temp).glob(f"{PACKAGE}_*.deb"))
        check_package(deb)
        if subprocess.run(["id", "-u"], capture_output=True, text=True).stdout.strip() != "0":
            print("not root: the package is built and inspected, not installed")
            return SKIPPED
        if installed():
            print(f"{PACKAGE} is installed on this machine already: left as it is")
            return SKIPPED
        run("dpkg", "-i", deb)
        try:
            try_installed_package()
        finally:
            run("dpkg", "--purge", PACKAGE)
    print("the package installs, runs its tools and goes again")
    return 0


if __name__ == "__main__":
    sys.exit(main())
