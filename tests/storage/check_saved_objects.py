"""Reads every golden file with a reader of another make, and compares with the trees beside them."""

import json
import sys

import saved_objects


def read_pack(path):
    with open(path, "rb") as stream:
        data = stream.read()
    place = 0
    while place < len(data):
        end = data.index(b"\n", place)
        name, size = data[place:end].decode("utf-8").rsplit(" ", 1)
        yield name, data[end + 1:end + 1 + int(size)]
        place = end + 1 + int(size) + 1


def without_words(tree):
    """A tree in which numbers stand without their words, as binary files have it."""
    kind, value = tree[1], tree[2]
    if kind in ("record", "object", "records") and value is not None:
        if kind == "record":
            value = [without_words(entry) for entry in value]
        elif kind == "object":
            value = dict(value, fields=[without_words(entry) for entry in value["fields"]])
        else:
            value = [entry and dict(entry, fields=[without_words(item) for item in entry["fields"]]) for entry in value]
    elif kind in ("enum", "uint32") and value is not None:
        value = saved_objects.worded(value)[0]
    elif kind == "enums":
        value = [saved_objects.worded(item)[0] for item in value]
    return [tree[0], kind, value]


def is_same(word, data, tree):
    if word in ("raw", "zbf"):
        return saved_objects.read_binary(data, word) == without_words(tree)
    return (saved_objects.Json if word == "json" else saved_objects.Xml)(data).same(tree)


def main(directory):
    with open(directory + "/trees.json", encoding="utf-8") as stream:
        trees = json.load(stream)
    faults = 0
    count = 0
    for word in ("raw", "zbf", "xml", "json"):
        names = []
        for name, data in read_pack(directory + "/golden." + word + ".pack"):
            names.append(name)
            count += 1
            try:
                good = is_same(word, data, trees[name][0])
                fault = "" if good else "another tree"
            except (saved_objects.Damaged, ValueError, KeyError, IndexError) as error:
                fault = repr(error)
            if fault:
                print(word, name, fault)
                faults += 1
        if sorted(names) != sorted(trees):
            print(word, "has other files than there are trees")
            faults += 1
    print(count, "files,", faults, "faults")
    return 1 if faults or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
