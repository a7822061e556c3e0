#!/usr/bin/env python3
"""Holds the choices that C++ leaves open and the formatter cannot make: one dialect for the whole tree.

    dialect.py ROOT [FILE...]

CONTRIBUTING.md has the rules in words. Without files, every source that git knows is read.
"""

import pathlib
import re
import subprocess
import sys

TOKEN = re.compile(
    r"""(?P<raw>(?:u8|u|U|L)?R"(?P<delimiter>[^()\\\s]{0,16})\(.*?\)(?P=delimiter)")
      | (?P<string>(?:u8|u|U|L)?"(?:\\.|[^"\\\n])*")
      | (?P<character>'(?:\\.|[^'\\\n])+')
      | (?P<comment>//(?:\\\n|[^\n])*|/\*.*?\*/)
      | (?P<directive>^[ \t]*\#(?:\\\n|[^\n])*)
      | (?P<number>\.?\d(?:[eEpP][+-]|[\w.']|)*)
      | (?P<word>[A-Za-z_]\w*)
      | (?P<space>\s+)
      | (?P<other>::|->|[=!]=|.)""", re.DOTALL | re.MULTILINE | re.VERBOSE)

ENDINGS = (".h", ".cpp", ".c")
PLAIN_LIMIT = 100
TABLE_LIMIT = 120  # between "clang-format off" and "clang-format on"

# Words after which const stands in front of its type, or before which no type can end.
NO_TYPE = frozenset("""
    static constexpr inline return extern mutable explicit virtual friend volatile else thread_local
    constinit consteval case typename operator noexcept override final using new delete throw typedef
    template public private protected const""".split())
BLOCK_WORDS = frozenset(["if", "for", "while", "do", "switch", "try"])


class Token:
    def __init__(self, kind, text, line):
        self.kind, self.text, self.line = kind, text, line


def tokens_of(text):
    """Everything but blanks, comments and preprocessor lines."""
    found = []
    line = 1
    for match in TOKEN.finditer(text):
        kind = match.lastgroup if match.lastgroup != "delimiter" else "raw"
        if kind not in ("space", "comment", "directive"):
            found.append(Token(kind, match.group(), line))
        line += match.group().count("\n")
    return found


class Statements:
    """The statements of a token list, as far as braces are concerned."""

    def __init__(self, tokens):
        self._tokens = tokens

    def text(self, index):
        return self._tokens[index].text if index < len(self._tokens) else ""

    def line(self, index):
        return self._tokens[min(index, len(self._tokens) - 1)].line

    def past_brackets(self, index):
        """The place behind the bracket that closes the one at `index`."""
        depth = 0
        while index < len(self._tokens):
            if self.text(index) in ("(", "[", "{"):
                depth += 1
            elif self.text(index) in (")", "]", "}"):
                depth -= 1
                if depth == 0:
                    return index + 1
            index += 1
        return index

    def past_head(self, index):
        """The place behind `if (...)`, `if constexpr (...) [[likely]]`, `for (...)` and their kin."""
        index += 1
        if self.text(index) == "constexpr":
            index += 1
        index = self.past_brackets(index)
        while self.text(index) == "[" == self.text(index + 1):
            index = self.past_brackets(index)
        return index

    def past_statement(self, index):
        word = self.text(index)
        if word == "{":
            return self.past_brackets(index)
        if word in ("for", "while", "switch"):
            return self.past_statement(self.past_head(index))
        if word == "if":
            index = self.past_statement(self.past_head(index))
            return self.past_statement(index + 1) if self.text(index) == "else" else index
        if word == "do":
            return self.past_brackets(self.past_statement(index + 1) + 1) + 1
        if word == "try":
            index = self.past_brackets(index + 1)
            while self.text(index) == "catch":
                index = self.past_brackets(self.past_brackets(index + 1))
            return index
        while index < len(self._tokens) and self.text(index) != ";":
            index = self.past_brackets(index) if self.text(index) in ("(", "[", "{") else index + 1
        return index + 1

    def bodies(self):
        """(head, body, end) of each controlled statement; an `else` is a head of its own."""
        for index, token in enumerate(self._tokens):
            if token.kind != "word":
                continue
            if token.text == "else" and self.text(index + 1) != "if":
                yield index, index + 1, self.past_statement(index + 1)
            elif token.text in ("if", "for", "while") and self.text(index - 1) != "#":
                body = self.past_head(index)
                if self.text(body) != ";":  # the end of do ... while (...);
                    yield index, body, self.past_statement(body)

    def wants_braces(self, head, body, end):
        """Whether this body is anything but one short statement on the line of its `if` or `for`."""
        return (self.text(head) == "else" or self.text(end) == "else" or
                self.text(head - 1) == "else" or self.text(body) in BLOCK_WORDS or
                self.text(head) == "if" and self.text(body).isupper() or  # a macro may end in "else"
                self.line(head) != self.line(end - 1))


def missing_braces(tokens):
    statements = Statements(tokens)
    return [(tokens[head].line, f"the body of this '{tokens[head].text}' wants braces")
            for head, body, end in statements.bodies()
            if statements.text(body) not in ("{", "") and statements.wants_braces(head, body, end)]


def needless_braces(tokens, lines):
    """Braces about one statement that would stand on the line of its `if` or `for`."""
    statements = Statements(tokens)
    found = []
    for head, body, end in statements.bodies():
        if statements.text(body) != "{" or end - body < 3 or tokens[head].text == "else":
            continue
        inner = [body + 1, statements.past_statement(body + 1)]
        if (inner[1] != end - 1 or statements.text(end) == "else" or
                statements.text(head - 1) == "else" or
                tokens[inner[0]].text in BLOCK_WORDS or tokens[inner[0]].text == "{" or
                tokens[inner[0]].text.isupper() or
                tokens[body - 1].text == "]" or  # the formatter keeps a line for what is [[likely]]
                tokens[head].line != tokens[body].line or
                tokens[end - 1].line != tokens[body].line + 2):
            continue
        first = lines[tokens[head].line - 1].rstrip()
        statement = lines[tokens[head].line].strip()
        if (first.endswith("{") and statement.endswith(";") and
                len(first) - 1 + len(statement) <= PLAIN_LIMIT):
            found.append((tokens[head].line, f"this '{tokens[head].text}' needs no braces"))
    return found


def ends_a_type(tokens, index):
    token = tokens[index]
    if token.text != ">":
        return (token.kind == "word" and token.text not in NO_TYPE and
                not token.text.endswith("_EXPORT"))
    depth = 0
    while index >= 0:  # back to where the template's arguments or parameters open
        depth += {">": 1, "<": -1}.get(tokens[index].text, 0)
        if depth == 0:
            break
        index -= 1
    return tokens[index - 1].text != "template"


def east_const(tokens):
    return [(token.line, f"const stands behind '{tokens[index].text}'")
            for index, token in enumerate(tokens[1:])
            if token.text == "const" and ends_a_type(tokens, index)]


def compared_nulls(tokens):
    return [(after.line, "'== nullptr' where '!' says it")
            for token, after in zip(tokens, tokens[1:])
            if token.text == "==" and after.text == "nullptr"]


def whole_namespaces(tokens):
    found = []
    for index, token in enumerate(tokens):
        if token.text == "using" and [name.text for name in tokens[index + 1:index + 2]] == ["namespace"]:
            name = next((later for later, end in zip(tokens[index:], tokens[index + 1:])
                         if end.text == ";"), token)
            if not name.text.endswith("_literals"):
                found.append((token.line, "'using namespace' brings in names that nobody lists"))
    return found


def static_at_namespace_scope(lines):
    """The formatter does not indent within namespaces, so column 0 tells."""
    return [(number, "'static' where an anonymous namespace belongs")
            for number, line in enumerate(lines, 1)
            if line.startswith("static ")]


ONE_LITERAL = re.compile(r'[^"]{0,40}"(?:[^"\\]|\\.)*"[),;}\\ ]*')  # which nobody breaks


def long_lines(lines, tokens):
    raw = {line for token in tokens if token.kind == "raw"
           for line in range(token.line, token.line + token.text.count("\n") + 1)}
    found = []
    limit = PLAIN_LIMIT
    for number, line in enumerate(lines, 1):
        if "clang-format off" in line:
            limit = TABLE_LIMIT
        if "clang-format on" in line:
            limit = PLAIN_LIMIT
        if len(line) > limit and not ONE_LITERAL.fullmatch(line) and number not in raw:
            found.append((number, f"{len(line)} columns, {limit} are allowed"))
    return found


CLASS = re.compile(r"^( *)(class|struct) (?:\w+_EXPORT )?\w+[^;]*\{$")
ACCESS = re.compile(r"^ *(public|private|protected):")
METHOD = re.compile(r"^ +(?:(?:static|virtual|constexpr|inline|explicit|\[\[nodiscard\]\]) )*"
                    r"[\w:<>,&* ]+?[ &*]([a-z]\w*)\(")


def bare_private_functions(lines):
    """Functions in a private section whose names have no leading underscore. Overriders keep the name."""
    found = []
    open_classes = []  # [indentation, whether the section is private]
    for number, line in enumerate(lines, 1):
        indentation = len(line) - len(line.lstrip())
        if (match := CLASS.match(line)):
            open_classes.append([len(match.group(1)), match.group(2) == "class"])
        elif not open_classes:
            continue
        elif (match := ACCESS.match(line)):
            open_classes[-1][1] = match.group(1) == "private"
        elif line.startswith(" " * open_classes[-1][0] + "}") and indentation == open_classes[-1][0]:
            open_classes.pop()
        elif open_classes[-1][1] and indentation == open_classes[-1][0] + 4:
            match = METHOD.match(line)
            declaration = re.split("[;{]", " ".join(lines[number - 1:number + 3]))[0]
            if (match and "override" not in declaration and
                    not re.match(r" *(friend|using|return|requires|//)", line)):
                found.append((number, f"the private function {match.group(1)} wants an underscore"))
    return found


def violations(text, is_c):
    """(line, words) of everything in a source that the dialect forbids."""
    lines = text.split("\n")
    tokens = tokens_of(text)
    found = (missing_braces(tokens) + needless_braces(tokens, lines) + east_const(tokens) +
             long_lines(lines, tokens))
    if not is_c:
        found += (compared_nulls(tokens) + whole_namespaces(tokens) +
                  static_at_namespace_scope(lines) + bare_private_functions(lines))
    return sorted(found)


def sources_of(root):
    listed = subprocess.run(["git", "-C", root, "ls-files", "--cached", "--others",
                             "--exclude-standard", *("*" + ending for ending in ENDINGS)],
                            check=True, stdout=subprocess.PIPE, text=True).stdout
    return [pathlib.Path(root) / name for name in listed.split()]


def main():
    root = sys.argv[1]
    files = [pathlib.Path(name) for name in sys.argv[2:]] or sources_of(root)
    count = 0
    for path in files:
        if not path.exists():  # deleted, and not yet committed
            continue
        if path.suffix not in ENDINGS:
            print(f"{path}: not read: no .h, .cpp or .c", file=sys.stderr)
            count += 1
            continue
        for line, words in violations(path.read_text(encoding="utf-8"), path.suffix == ".c"):
            print(f"{path}:{line}: {words}")
            count += 1
    return 1 if count else 0


if __name__ == "__main__":
    sys.exit(main())
