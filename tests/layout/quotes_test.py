#!/usr/bin/env python3
"""The C++ on pages that show whole pieces of it is code that is compiled.

    quotes_test.py SOURCE_FOLDER
"""

import pathlib
import re
import sys

BLOCK = re.compile(r"^```cpp\n(.*?)^```$", re.MULTILINE | re.DOTALL)
# A page, and the folders whose code it shows.
PAGES = {
    "README.md": ("examples/smallest",),
    "docs/testing-a-provider.md": ("tests/testing", "tests/providers/fan"),
    "docs/tutorial.md": ("examples/ethernet",),
}


def squeezed(text):
    return "\n".join(line.strip() for line in text.strip().splitlines())


def made_up(source, page, folders):
    """The blocks of the page that are nowhere in these folders."""
    blocks = BLOCK.findall((source / page).read_text(encoding="utf-8"))
    code = [squeezed(file.read_text(encoding="utf-8"))
            for folder in folders for file in (source / folder).iterdir() if file.suffix in (".cpp", ".h")]
    return [block for block in blocks if not any(squeezed(block) in text for text in code)] if blocks else ["no code"]


def main():
    source = pathlib.Path(sys.argv[1])
    found = [(page, block) for page, folders in PAGES.items() for block in made_up(source, page, folders)]
    for page, block in found:
        print(f"{page}: nothing compiles this:\n{block}")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
