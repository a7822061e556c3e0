#!/usr/bin/env python3
"""The code on the page on tests of providers is code that is compiled.

    quotes_test.py SOURCE_FOLDER
"""

import pathlib
import re
import sys

BLOCK = re.compile(r"^```cpp\n(.*?)^```$", re.MULTILINE | re.DOTALL)
FOLDERS = ("tests/testing", "tests/providers/fan")


def squeezed(text):
    return "\n".join(line.strip() for line in text.strip().splitlines())


def main():
    source = pathlib.Path(sys.argv[1])
    page = (source / "docs/testing-a-provider.md").read_text(encoding="utf-8")
    blocks = BLOCK.findall(page)
    code = [squeezed(file.read_text(encoding="utf-8"))
            for folder in FOLDERS for file in (source / folder).iterdir() if file.suffix in (".cpp", ".h")]
    made_up = [block for block in blocks if not any(squeezed(block) in text for text in code)]
    for block in made_up:
        print(f"docs/testing-a-provider.md: nothing compiles this:\n{block}")
    sys.exit(1 if made_up or not blocks else 0)


if __name__ == "__main__":
    main()
