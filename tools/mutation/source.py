"""A C++ source as a list of tokens with their offsets, without comments and preprocessor lines."""

import re
from dataclasses import dataclass

_TOKEN = re.compile(
    r"""
    (?P<skip>//[^\n]*|/\*.*?\*/|(?<![^\n])[ \t]*\#(?:\\\n|[^\n])*|\s+)
  | (?P<text>"(?:\\.|[^"\\\n])*")
  | (?P<char>(?:u8?|U|L)?'(?:\\.|[^'\\\n])+')
  | (?P<number>\.?\d(?:[eE][+-]|'(?=\w)|[\w.])*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<sign><<=|>>=|->\*|::|->|\+\+|--|&&|\|\||[-+*/%&|^=!<>]=|.)
    """,
    re.VERBOSE | re.DOTALL,
)

_PAIRS = {"(": ")", "[": "]", "{": "}"}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int

    @property
    def end(self):
        return self.start + len(self.text)


class Source:
    """The tokens of one file, with queries about brackets, lines and lists."""

    def __init__(self, name, text):
        self.name = name
        self.text = text
        self.tokens = [
            Token(match.lastgroup, match.group(), match.start())
            for match in _TOKEN.finditer(text)
            if match.lastgroup != "skip"
        ]
        self.partner = {}  # maps the index of each bracket to its match
        self.enclosing = []  # for each token the innermost open bracket, or -1
        self._pair_brackets()

    def _pair_brackets(self):
        open_brackets = []
        for i, token in enumerate(self.tokens):
            self.enclosing.append(open_brackets[-1] if open_brackets else -1)
            if token.kind != "sign":
                continue
            if token.text in _PAIRS:
                open_brackets.append(i)
            elif token.text in _PAIRS.values() and open_brackets:
                begin = open_brackets.pop()
                self.partner[begin], self.partner[i] = i, begin

    def token(self, i):
        """The text of a token, empty if the index is out of range."""
        return self.tokens[i].text if 0 <= i < len(self.tokens) else ""

    def span(self, first, last):
        """The offsets of the tokens from first to last."""
        return self.tokens[first].start, self.tokens[last].end

    def is_spaced(self, i):
        """True for binary operators, unlike template brackets and references: the formatter puts spaces around them."""
        token = self.tokens[i]
        return self.text[token.start - 1].isspace() and self.text[token.end : token.end + 1].isspace()

    def line_number(self, offset):
        return self.text.count("\n", 0, offset) + 1

    def line_at(self, offset):
        """The line at an offset, without its indentation."""
        end = self.text.find("\n", offset)
        return self.text[self.text.rfind("\n", 0, offset) + 1 : end if end >= 0 else None].strip()

    def split_list(self, opening):
        """The elements of a bracketed list, each as its first and last token."""
        elements, first, i = [], opening + 1, opening + 1
        closing = self.partner[opening]
        while i <= closing:
            if i == closing or self.token(i) == ",":
                elements.append((first, i - 1))
                first = i + 1
            elif self.token(i) in _PAIRS and i in self.partner:
                i = self.partner[i]
            i += 1
        return elements if all(last >= first for first, last in elements) else []
