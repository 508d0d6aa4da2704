#!/usr/bin/env python3
"""Prints what a release is made of as SPDX 2.3 in JSON: scripts/sbom.py VERSION DIRECTORY

What is linked, its licences and its kind come from docs/third-party.md, versions from the packages of this machine and from
what scripts/deps.sh has built. Packages and source archives in DIRECTORY are listed with their checksums. The time is
SOURCE_DATE_EPOCH.
"""
import datetime
import glob
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LICENCES = {
    "LGPL-2.1 or later": "LGPL-2.1-or-later",
    "BSD-3-Clause or GPL": "BSD-3-Clause OR GPL-1.0-or-later",
    "X11 (MIT)": "X11", "MIT (X11)": "X11",
    "libpng": "libpng-2.0",
    "Zlib": "Zlib",
    "GPL-3 with the runtime library exception": "GPL-3.0-or-later WITH GCC-exception-3.1",
    "MIT": "MIT", "BSD-2-Clause": "BSD-2-Clause", "BSD-3-Clause": "BSD-3-Clause", "Apache-2.0": "Apache-2.0",
}
# Where no shared library tells the package.
PACKAGES = {"nlohmann JSON": "nlohmann-json3-dev", "CLI11": "libcli11-dev"}


def output_of(*command):
    result = subprocess.run(command, capture_output=True, text=True)
    return result.stdout if result.returncode == 0 else ""


def deps_note():
    cache = os.environ.get("ZYR_DEPS_DIR") or os.path.join(
        os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache"), "zyrmont-deps")
    try:
        text = pathlib.Path(cache, f"deps-{os.uname().machine}.cmake").read_text(encoding="utf-8")
    except OSError:
        text = ""
    return dict(re.findall(r'set\((\w+) "(.*)"\)', text))


def package_of(library):
    """The Debian package with a shared library of this name, and its version."""
    for place in ("/usr/lib/*", "/lib/*", "/usr/lib", "/lib"):
        for file in sorted(glob.glob(f"{place}/{library}.so.[0-9]*")):
            for path in {file, os.path.realpath(file)}:
                if owner := output_of("dpkg-query", "-S", path):
                    name = owner.split(":")[0]
                    return name, output_of("dpkg-query", "-W", "-f", "${Version}", f"{name}:{machine()}") or \
                        output_of("dpkg-query", "-W", "-f", "${Version}", name)
    return "", ""


def machine():
    return output_of("dpkg", "--print-architecture").strip()


def rows():
    """(name, licence, kind, libraries) of the two tables of what is shipped."""
    inside = False
    for line in (ROOT / "docs/third-party.md").read_text(encoding="utf-8").splitlines():
        if line.startswith("#"):
            inside = line in ("## In what is shipped", "## What FFmpeg brings")
        elif inside and line.startswith("| ") and not line.startswith("| Library |"):
            name, licence, linked = [part.strip() for part in line.split("|")[1:4]]
            if name != "FFmpeg's own":
                yield name, licence, linked, re.findall(r"`([^`]+)`", linked)


def describe(name, licence, libraries, note):
    version, package = "", PACKAGES.get(name, "")
    if name.startswith("FFmpeg") and note.get("ZYR_FFMPEG_PREFIX"):
        version = re.search(r"ffmpeg-([0-9.]+)-", note["ZYR_FFMPEG_PREFIX"])[1]
    elif name == "miniz" and note.get("ZYR_MINIZ_DIR"):
        text = pathlib.Path(note["ZYR_MINIZ_DIR"], "miniz.h").read_text(encoding="utf-8")
        version = re.search(r'MZ_VERSION\s+"([^"]+)"', text)[1]
        licence = "Unlicense"
    elif package:
        version = output_of("dpkg-query", "-W", "-f", "${Version}", package)
    elif libraries:
        package, version = package_of(libraries[0])
    if name == "miniz" and licence != "Unlicense":
        licence = "MIT"
    entry = {
        "SPDXID": "SPDXRef-" + re.sub(r"[^A-Za-z0-9.]+", "-", name).strip("-"),
        "name": name,
        "versionInfo": version or "unknown",
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": "NOASSERTION",
        "licenseDeclared": licence if licence == "Unlicense" else LICENCES[licence],
        "copyrightText": "NOASSERTION",
    }
    if package and version:
        entry["externalRefs"] = [{
            "referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
            "referenceLocator": f"pkg:deb/debian/{package}@{version.replace(':', '%3A').replace('+', '%2B')}"}]
    return entry


def main():
    if len(sys.argv) != 3 or sys.argv[1].startswith("-"):
        print(__doc__, file=sys.stderr)
        return 2
    version, directory = sys.argv[1], pathlib.Path(sys.argv[2])
    note = deps_note()
    own = {
        "SPDXID": "SPDXRef-Zyrmont", "name": "zyrmont", "versionInfo": version, "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False, "licenseConcluded": "MIT", "licenseDeclared": "MIT", "copyrightText": "NOASSERTION"}
    packages, relations = [own], [("SPDXRef-DOCUMENT", "DESCRIBES", own["SPDXID"])]
    seen = set()
    for name, licence, linked, libraries in rows():
        entry = describe(name, licence, libraries, note)
        if entry["SPDXID"] in seen:
            continue
        seen.add(entry["SPDXID"])
        packages.append(entry)
        kind = "STATIC_LINK" if linked.startswith("static") or linked == "headers" else "DYNAMIC_LINK"
        relations.append((own["SPDXID"], kind, entry["SPDXID"]))
    digests = []
    for file in sorted([*directory.glob("*.deb"), *directory.glob("*.tar.xz")]):
        digest = hashlib.sha256(file.read_bytes()).hexdigest()
        digests.append(digest)
        entry = dict(own, SPDXID="SPDXRef-File-" + re.sub(r"[^A-Za-z0-9.]+", "-", file.name), name=file.name,
                     packageFileName=file.name, checksums=[{"algorithm": "SHA256", "checksumValue": digest}])
        packages.append(entry)
        relations.append((own["SPDXID"], "GENERATES", entry["SPDXID"]))
    time = datetime.datetime.fromtimestamp(int(os.environ.get("SOURCE_DATE_EPOCH", "0")), datetime.timezone.utc)
    identity = hashlib.sha256("".join(digests).encode()).hexdigest()[:32]
    json.dump({
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": f"zyrmont-{version}",
        "documentNamespace": f"https://zyrmont.invalid/spdx/zyrmont-{version}-{identity}",
        "creationInfo": {"created": time.strftime("%Y-%m-%dT%H:%M:%SZ"), "creators": ["Tool: scripts/sbom.py"]},
        "packages": packages,
        "relationships": [{"spdxElementId": a, "relationshipType": kind, "relatedSpdxElement": b} for a, kind, b in relations],
    }, sys.stdout, indent=1, ensure_ascii=False)
    print()
    return 0


if __name__ == "__main__":
    sys.exit(main())
