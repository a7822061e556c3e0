#!/usr/bin/env python3
"""Writes the registration of a module from its MOF and its sources: our neutral form, a line a class, of every class
in the MOF files that is not abstract, for the provider that PYL_CMPI_PROVIDER names in the sources. A class is
registered as instance; an association, and one with methods of its own or inherited from these files, as that too; an
indication as that alone.

    register_classes.py OUTPUT.registration NAMESPACE SCHEMA_FOLDER FILE...

FILE is MOF when it is called so, and a source otherwise. Superclasses are looked up in the schema folder too.
"""

import pathlib
import re
import sys

# Comments, and texts, which may hold anything; qualifier lists hold neither brackets nor classes once these are gone.
COMMENT_OR_TEXT = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\])*"', re.DOTALL)
CLASS = re.compile(r"(\[[^\]]*\])?\s*\bclass\s+(\w+)\s*(?::\s*(\w+)\s*)?\{(.*?)\}\s*;", re.DOTALL | re.IGNORECASE)
QUALIFIERS = re.compile(r"\[[^\]]*\]")
METHOD = re.compile(r"\w\s+\w+\s*\(")
PROVIDER = re.compile(r"^\s*PYL_CMPI_PROVIDER\(\s*(\w+)", re.MULTILINE)


class Class:
    def __init__(self, match):
        self.name, self.parent = match[2], match[3]
        self.qualifiers = set(re.findall(r"\w+", (match[1] or "").lower()))
        self.has_methods = bool(METHOD.search(QUALIFIERS.sub("", match[4])))


def without_comments(path):
    return COMMENT_OR_TEXT.sub('""', path.read_text(encoding="utf-8"))


def classes_in(path):
    # Values in braces, as those of qualifiers, would end a class early.
    text = re.sub(r"\{[^{}]*\}(?!\s*;)", "", without_comments(path))
    return [Class(match) for match in CLASS.finditer(text)]


def lineage(of, known):
    """The class and its ancestors, as far as they are known."""
    while of:
        yield of
        of = known.get((of.parent or "").lower())


def kinds(of, own, known):
    ancestors = list(lineage(of, known))
    is_marked = {name: any(name in ancestor.qualifiers for ancestor in ancestors)
                 for name in ("association", "indication")}
    if is_marked["indication"]:
        return ["indication"]
    has_methods = any(ancestor.has_methods for ancestor in ancestors if ancestor in own)
    return ["instance", *["association"] * is_marked["association"], *["method"] * has_methods]


def main():
    if len(sys.argv) < 5:
        sys.exit(__doc__)
    output, name_space, schema = pathlib.Path(sys.argv[1]), sys.argv[2], pathlib.Path(sys.argv[3])
    files = [pathlib.Path(word) for word in sys.argv[4:]]
    schemas = [file for file in files if file.suffix == ".mof"]
    providers = {name for file in files if file not in schemas for name in PROVIDER.findall(without_comments(file))}
    if len(providers) != 1:
        named = ", ".join(sorted(providers)) or "none"
        sys.exit(f"{output.stem}: PYL_CMPI_PROVIDER must name one provider in its sources (there: {named}); "
                 "or write a registration, and give it as REGISTRATION")
    own = [one for file in schemas for one in classes_in(file)]
    known = {one.name.lower(): one for file in sorted(schema.rglob("*.mof")) for one in classes_in(file)}
    known.update((one.name.lower(), one) for one in own)
    rows = [" ".join([one.name, name_space, *providers, output.stem, *kinds(one, own, known)])
            for one in own if "abstract" not in one.qualifiers]
    if not rows:
        sys.exit(f"{output.stem}: no class to register in {', '.join(map(str, schemas))}")
    output.write_text("# Class Namespace Provider Module kind...\n" + "\n".join(rows) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
