"""A C++ source as a list of tokens, each with its place; comments and preprocessor lines are left out."""

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
    """The tokens of one file, and what lies around a place in it."""

    def __init__(self, name, text):
        self.name = name
        self.text = text
        self.tokens = [
            Token(match.lastgroup, match.group(), match.start())
            for match in _TOKEN.finditer(text)
            if match.lastgroup != "skip"
        ]
        self.partner = {}  # of each bracket the other
        self.around = []  # of each token the bracket that was opened last; -1 outside
        self._pair_brackets()

    def _pair_brackets(self):
        open_ones = []
        for i, token in enumerate(self.tokens):
            self.around.append(open_ones[-1] if open_ones else -1)
            if token.kind != "sign":
                continue
            if token.text in _PAIRS:
                open_ones.append(i)
            elif token.text in _PAIRS.values() and open_ones:
                begin = open_ones.pop()
                self.partner[begin], self.partner[i] = i, begin

    def token(self, i):
        """The text of a token; empty beyond both ends."""
        return self.tokens[i].text if 0 <= i < len(self.tokens) else ""

    def span(self, first, last):
        """Where the tokens from first to last stand."""
        return self.tokens[first].start, self.tokens[last].end

    def is_spaced(self, i):
        """Binary operators stand between spaces here, unlike the brackets of templates and references."""
        token = self.tokens[i]
        return self.text[token.start - 1].isspace() and self.text[token.end : token.end + 1].isspace()

    def line_number(self, place):
        return self.text.count("\n", 0, place) + 1

    def line_at(self, place):
        """The line around a place, without its indentation."""
        end = self.text.find("\n", place)
        return self.text[self.text.rfind("\n", 0, place) + 1 : end if end >= 0 else None].strip()

    def split_list(self, opening):
        """The elements between an opening bracket and its partner, as first and last tokens."""
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
