#!/usr/bin/env python3
"""Lists the calls that can fail and whose failure our code looks at, with the test that lets each one fail.

    scripts/faults.py            compares the sources with tests/faults/faults.txt: exit code 1 when they differ or a test is missing
    scripts/faults.py --write    takes over new calls, without a test, and leaves out those that are gone
    scripts/faults.py --open     prints those that no test fails yet

Looked at are FFmpeg, PAM, libsystemd, OpenSSL, and the C library's memory and descriptors, in the library, the modules and the
plug-ins. A call whose result is thrown away is none: it stands alone as a statement. Each line of the list is

    FILE FUNCTION [CALLS] Suite.Test             the test that fails it
    FILE FUNCTION [CALLS] - why it can't fail    nothing to test
    FILE FUNCTION [CALLS] ?                      no test yet, which is a failure, too
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LIST = ROOT / "tests/faults/faults.txt"
FUNCTIONS = re.compile(
    r"(?<![\w.>:\"])(?:::)?("
    r"(?:av|avcodec|avformat|avio|sws)_\w+|pam_\w+|sd_\w+|(?:SSL|X509|EVP|BIO|PEM|ASN1|RAND|BN)_\w+|"
    r"malloc|calloc|realloc|aligned_alloc|posix_memalign|mmap|memfd_create|"
    r"open|openat|socket|socketpair|pipe2?|eventfd|epoll_create1|timerfd_create|dup[23]?|accept4?|fopen|fdopen|opendir|"
    r"inotify_init1|shm_open|mkstemp|mkostemp)\(")
NOISE = re.compile(r"//[^\n]*|/\*.*?\*/|\"(?:\\.|[^\"\\\n])*\"|'(?:\\.|[^'\\\n])'", re.S)
# A statement by itself: what stands before it ends one, or casts its result away.
ALONE = re.compile(r"(?:[;{}]|\(void\)|\belse)\s*$")
# What gives a constant, a text or a flag, and can't fail.
HARMLESS = re.compile(r"_(?:free|unref|strerror|get_error|get_error_string|is_init_finished|has_pending|s_mem|s_secmem|sha256|cert_error_string|get_cipher_name|get_version|get_verify_result|get0_param)$|"
                      r"^(?:av_get_pix_fmt_name|SSL_get_SSL_CTX|BIO_get_data|sd_session_get_\w+_name)$")


def calls():
    found = {}
    for file in sorted((ROOT / "src").rglob("*.cpp")):
        name = str(file.relative_to(ROOT / "src"))
        if name.startswith("host/"):
            continue
        # Comments and texts become blanks, so that places stay.
        text = NOISE.sub(lambda match: '""' if match[0][0] == '"' else " ", file.read_text(encoding="utf-8"))
        for match in FUNCTIONS.finditer(text):
            before = text[:match.start()]
            # A definition or declaration has its type in front.
            declared = re.search(r"(?:\b(?:int|void|bool|auto)\b|[\w>][*&]) ?$", before)
            # The same word is a method of ours.
            own = match[1] in ("open", "openat") and "O_" not in text[match.end():match.end() + 160]
            if not own and not ALONE.search(before) and not declared and not HARMLESS.search(match[1]):
                found[name, match[1]] = found.get((name, match[1]), 0) + 1
    return found


def listed():
    entries = {}
    for line in LIST.read_text(encoding="utf-8").splitlines():
        if match := re.fullmatch(r"(\S+) (\S+) \[(\d+)\] (\?|- .+|\w[\w/]*\.\w[\w/]*)", line):
            entries[match[1], match[2]] = (int(match[3]), match[4])
        elif line and not line.startswith("#"):
            sys.exit(f"faults: what does this line say? {line}")
    return entries


def tests():
    names = set()
    for file in (ROOT / "tests").rglob("*.cpp"):
        names.update(f"{suite}.{case}" for suite, case in
                     re.findall(r"^(?:TYPED_)?TEST(?:_[FP])?\((\w+), *(\w+)\)", file.read_text(encoding="utf-8"), re.M))
    return names


def main():
    mode = sys.argv[1] if len(sys.argv) > 1 else ""
    if mode not in ("", "--write", "--open") or len(sys.argv) > 2:
        print(__doc__, file=sys.stderr)
        return 2
    found = calls()
    known = listed() if LIST.exists() else {}
    if mode == "--write":
        head = ("# Calls that can fail, and the test that lets each fail: FILE FUNCTION [CALLS] Suite.Test, \"- why not\", or ? where\n"
                "# none does yet. scripts/faults.py compares this with the sources.\n\n")
        LIST.write_text(head + "".join(f"{file} {function} [{count}] {known.get((file, function), (0, '?'))[1]}\n"
                                       for (file, function), count in sorted(found.items())), encoding="utf-8")
        known = listed()
    faults, names = [], tests()
    for key, count in sorted(found.items()):
        if key not in known:
            faults.append(f"{key[0]} calls {key[1]}, which the list does not know")
        elif known[key][0] != count:
            faults.append(f"{key[0]} calls {key[1]} {count} times, and the list says {known[key][0]}")
    for key, (_, test) in sorted(known.items()):
        if key not in found:
            faults.append(f"{key[0]} does not call {key[1]} any more")
        elif test[0] not in "?-" and test not in names:
            faults.append(f"{test}, which fails {key[1]} of {key[0]}, is no test")
    for fault in faults:
        print(f"faults: {fault}")
    missing = [key for key, (_, test) in sorted(known.items()) if test == "?"]
    if mode == "--open" or missing:
        print(*(f"{file} {function}" for file, function in missing), sep="\n")
    if faults:
        print("faults: scripts/faults.py --write takes new calls over; name their tests in tests/faults/faults.txt")
    print(f"faults: {len(known)} calls are looked at, {len(known) - len(missing)} have a test or a reason, {len(missing)} have none yet")
    return 1 if faults or missing else 0


if __name__ == "__main__":
    sys.exit(main())
