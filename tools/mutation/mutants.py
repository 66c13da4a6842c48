"""Finds the mutants of a source: small changes that a test should detect."""

import re
from dataclasses import dataclass

from source import Source

_COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
_OPPOSITES = {"true": "false", "false": "true"}
_CONTROL = {"if", "while", "for", "switch", "return", "else", "do"}
_NO_EXPRESSION = _CONTROL | {"break", "continue", "case", "default", "using", "delete"}
_COMMUTATIVE = {"min", "max", "qMin", "qMax", "swap", "isFinite", "isSamePlace"}  # argument order does not matter
_CONVERSIONS = {"toNumber", "toDouble", "toInt"}
_LONG_LIST = 6  # a longer list is a table, whose rows can usually be in any order


@dataclass
class Mutant:
    """One change of one file: the text between two offsets is replaced."""

    number: int
    source: Source
    start: int
    end: int
    after: str
    kind: str
    nth: int = 1  # numbers identical changes of identical lines

    @property
    def before(self):
        return self.source.text[self.start : self.end]

    @property
    def change(self):
        """The old and the new text, on one line."""
        change = f"{_on_one_line(self.before)} -> {_on_one_line(self.after) or 'nothing'}"
        return change if self.nth == 1 else f"{change} ({self.nth})"

    @property
    def line(self):
        return self.source.line_number(self.start)

    @property
    def line_text(self):
        return self.source.line_at(self.start)

    def apply(self):
        """The whole file with the change."""
        return self.source.text[: self.start] + self.after + self.source.text[self.end :]


def _on_one_line(text):
    return re.sub(r"\s+", " ", text)


def find_mutants(sources):
    """All mutants of the sources, numbered from 1 in source order."""
    mutants = []
    for source in sources:
        found = {}
        for finder in (_comparisons, _constants, _conditions, _returns, _texts, _arguments, _choices, _statements):
            for start, end, after, kind in finder(source):
                found.setdefault((start, end, after), kind)
        alike = {}
        for (start, end, after), kind in sorted(found.items()):
            mutant = Mutant(len(mutants) + 1, source, start, end, after, kind)
            key = (mutant.line_text, mutant.change)
            alike[key] = mutant.nth = alike.get(key, 0) + 1
            mutants.append(mutant)
    return mutants


def _comparisons(source):
    for i, token in enumerate(source.tokens):
        if token.kind == "sign" and token.text in _COMPARISONS and source.is_spaced(i):
            if source.token(i - 1) != "template" and not _in_assertion(source, i):
                yield token.start, token.end, _COMPARISONS[token.text], "comparison"


def _constants(source):
    for i, token in enumerate(source.tokens):
        if _in_assertion(source, i) or _is_overwritten(source, i):
            continue
        if token.text in _OPPOSITES:
            yield token.start, token.end, _OPPOSITES[token.text], "constant"
        elif token.kind == "char":
            yield token.start, token.end, _other_char(token.text), "constant"
        elif _is_minus_one(source, i):
            yield source.tokens[i - 1].start, token.end, "0", "constant"
        elif token.kind == "number" and not _is_capacity(source, i):
            other = str(abs(int(token.text) - 1)) if _is_index(source, i) else _next_number(token.text)
            yield token.start, token.end, other, "constant"


def _conditions(source):
    for i, token in enumerate(source.tokens):
        if _in_assertion(source, i):
            continue
        if token.text in ("if", "while") and source.token(i + 1) == "(":
            start, end = source.span(i + 1, source.partner[i + 1])
            if not _is_negated_elsewhere(source.text[start + 1 : end - 1]):
                yield start, end, f"(!{source.text[start:end]})", "condition"
        elif token.text in ("&&", "||") and source.is_spaced(i):
            yield token.start, token.end, "||" if token.text == "&&" else "&&", "condition"
        elif token.text == "!":
            yield token.start, token.end, "", "condition"


# The value returned by a bool function, unless it is a constant.
def _returns(source):
    for match in re.finditer(r"^(?:inline |constexpr )*bool .*?^}", source.text, re.MULTILINE | re.DOTALL):
        for found in re.finditer(r"\breturn ((?!true;|false;|!)[^;]+);", match.group()):
            start, end = (match.start() + place for place in found.span(1))
            if not _is_negated_elsewhere(found.group(1)):
                yield start, end, f"!({found.group(1)})", "condition"


# True if mutating the leading "!" or the only comparison already negates the condition.
def _is_negated_elsewhere(condition):
    return not re.search(r"&&|\|\||\?", condition) and bool(re.search(r"^!| [=!]= ", condition))


def _texts(source):
    for i, token in enumerate(source.tokens):
        if token.kind == "text" and not _in_assertion(source, i):
            yield token.start, token.end, f'"{_other_text(token.text[1:-1])}"', "text"


def _arguments(source):
    for i in source.partner:
        if _in_assertion(source, i) or _is_commutative(source, i):
            continue
        if _is_call(source, i) or _is_value(source, i):
            yield from _swapped_elements(source, source.split_list(i))


def _is_call(source, i):
    return source.token(i) == "(" and source.tokens[i - 1].kind == "word" and source.token(i - 1) not in _CONTROL


def _is_value(source, i):
    if source.token(i) != "{":
        return False
    if source.token(i - 1) in ("(", ",", "return", "{", "="):
        return True
    return source.tokens[i - 1].kind == "word" and _closes_on_line(source, i)


# Arguments, or the elements of a list argument, of a function that treats them all alike.
def _is_commutative(source, i):
    call = i - 1 if source.token(i) == "{" and source.token(i - 1) == "(" else i
    return source.token(call - 1) in _COMMUTATIVE


def _swapped_elements(source, elements):
    if len(elements) < 2 or len(elements) > _LONG_LIST:
        return
    if not all(_is_expression(source, *element) for element in elements):
        return
    for (a, b), (c, d) in zip(elements, elements[1:]):
        first, second = source.span(a, b), source.span(c, d)
        texts = [source.text[slice(*place)] for place in (first, second)]
        if texts[0] != texts[1] and _shape(texts[0]) == _shape(texts[1]):
            yield first[0], second[1], texts[1] + source.text[first[1] : second[0]] + texts[0], "order"


# Swaps only texts of the same shape: others do not compile, and a reversed range is not a plausible mistake.
def _shape(text):
    if text.endswith((".begin()", ".end()")):
        return text
    return (
        bool(re.fullmatch(r"true|false|-?[\d.]+", text)),
        bool(re.search(r'"|QString\(', text)),
        "[](" in text,
        text == "this" or text.startswith(("Qt::", "&")),
    )


# Swaps both values of a conditional operator.
def _choices(source):
    for i, token in enumerate(source.tokens):
        if token.text != "?":
            continue
        colon = _end_of_value(source, i + 1, {":"})
        end = _end_of_value(source, colon + 1, {":", ",", ";", ")", "}", "]"})
        first, second = source.span(i + 1, colon - 1), source.span(colon + 1, end - 1)
        between = source.text[first[1] : second[0]]
        yield first[0], second[1], source.text[slice(*second)] + between + source.text[slice(*first)], "order"


# Removes a simple statement, or a break or continue.
def _statements(source):
    for first, semicolon in _simple_statements(source):
        start, end = source.span(first, semicolon)
        if "reserve" not in source.text[start:end]:
            yield start, end, ";", "removal"
    for token in source.tokens:
        if token.text in ("break", "continue"):
            yield token.start, token.end, "", "removal"


def _simple_statements(source):
    for i, token in enumerate(source.tokens):
        if not _begins_statement(source, i) or token.text in _NO_EXPRESSION:
            continue
        end = _end_of_value(source, i, {";", "{", "}"})
        if source.token(end) == ";" and _is_expression(source, i, end - 1) and _does_something(source, i, end):
            yield i, end


def _begins_statement(source, i):
    if source.token(source.enclosing[i]) != "{" or not _in_function(source, i):
        return False
    before = source.token(i - 1)
    if before == ")":
        return source.token(source.partner[i - 1] - 1) in _CONTROL
    return before in (";", "{", "}", "else", "do")


def _does_something(source, first, end):
    return any(
        source.token(i) in ("=", "++", "--", "(") or re.fullmatch(r"[-+*/%&|^]=", source.token(i))
        for i in range(first, end)
    )


def _in_function(source, i):
    line_start = source.text.rfind("\n", 0, source.tokens[i].start) + 1
    return source.text[line_start : line_start + 4] == "    "


# False for a declaration, which has two adjacent words, and for a list of rows.
def _is_expression(source, first, last):
    if last < first or source.token(first) == "Q_EMIT":
        return last >= first
    if source.token(first) in ("{", "~", "const") or source.token(first).startswith("Q_"):
        return False
    if source.token(last) in ("default", "delete", "override"):
        return False
    for i in range(first, min(last, first + 12)):
        a, b = source.tokens[i], source.tokens[i + 1]
        if a.text in ("(", "[", "{", "="):
            break
        if a.kind == "word" and b.kind == "word" and a.text not in ("return", "not"):
            return False
        if a.kind == "word" and b.text in ("*", "&", "<") and not source.is_spaced(i + 1):
            return False
        if a.text == ">" and b.kind == "word" and not source.is_spaced(i):
            return False
    return True


def _end_of_value(source, i, ends):
    nested = 0
    while i < len(source.tokens):
        text = source.token(i)
        if text in ends and nested == 0:
            return i
        if text in ("(", "[", "{") and i in source.partner:
            i = source.partner[i]
        elif text == "?":
            nested += 1
        elif text == ":" and nested > 0:
            nested -= 1
        i += 1
    return len(source.tokens) - 1


def _closes_on_line(source, i):
    return "\n" not in source.text[source.tokens[i].start : source.tokens[source.partner[i]].start]


def _in_assertion(source, i):
    statement = source.text.rfind(";", 0, source.tokens[i].start) + 1
    return "static_assert" in source.text[statement : source.tokens[i].start]


# True if a variable is overwritten before its initial value is read. The conversion functions always set their outputs.
def _is_overwritten(source, i):
    name = source.token(i - 2)
    if source.token(i - 1) != "=" or source.token(i - 3) not in ("bool", "int", "double") or source.token(i + 1) != ";":
        return False
    use = next((j for j in range(i, len(source.tokens)) if source.token(j) == name), i)
    if any(source.token(j) in _CONTROL and source.partner.get(j + 1, use) < use for j in range(i, use)):
        return False
    if source.token(use + 1) == "=":
        return source.enclosing[use] == source.enclosing[i]
    call = source.enclosing[use]
    return source.token(call) == "(" and source.token(call - 1) in _CONVERSIONS and source.token(use + 1) == ")"


# Constant indices, and a 1 in ?:, get smaller: an index past the end is undefined behaviour.
def _is_index(source, i):
    if source.token(i - 1) in ("?", ":"):
        return source.token(i) == "1"
    return source.token(i - 1) == "[" and source.token(i + 1) == "]" and source.token(i).isdigit()


# The size of an array or a reservation: tests cannot observe the capacity.
def _is_capacity(source, i):
    if source.token(i + 1) == ">" and not source.is_spaced(i + 1):
        return True
    is_declaration = source.tokens[i - 3].kind == "word" and source.token(i - 3) not in _NO_EXPRESSION
    if source.token(i - 1) == "[" and _is_index(source, i) and is_declaration:
        return True
    return "reserve" in source.line_at(source.tokens[i].start)


# -1 means "none" and becomes 0, because -2 would mean the same.
def _is_minus_one(source, i):
    return source.token(i) == "1" and source.token(i - 1) == "-" and not source.is_spaced(i - 1)


def _next_number(text):
    digits, suffix = re.fullmatch(r"(0[xX][\da-fA-F']+|[\d.']+(?:[eE][-+]?\d+)?|\.\d+)([uUlLfF]*)", text).groups()
    digits = digits.replace("'", "")
    if digits[:2] in ("0x", "0X"):
        return f"0x{int(digits, 16) + 1:X}{suffix}"
    if "e" in digits.lower():
        mantissa, exponent = digits.lower().split("e")
        return f"{float(mantissa) + 1:g}e{exponent}{suffix}"
    if "." in digits:
        return f"{float(digits) + 1!r}{suffix}"
    return f"{int(digits) + 1}{suffix}"


def _other_char(text):
    prefix, body = re.fullmatch(r"(\w*)'(.*)'", text, re.DOTALL).groups()
    return f"{prefix}'{chr(ord(body) + 1)}'" if len(body) == 1 and body.isalnum() else f"{prefix}'x'"


# Replaces the middle letter by the next one, or else another character that is not part of an escape or a placeholder.
def _other_text(text):
    plain = [i for i in range(len(text)) if not re.search(r"[\\%]$", text[:i]) and text[i] not in "\\%"]
    letters = [i for i in plain if text[i].isalpha()]
    if not plain:
        return text + "x"
    places = letters or plain
    i = places[len(places) // 2]
    other = chr(ord(text[i]) + 1) if text[i].isalpha() and text[i] not in "zZяЯ" else "x"
    return text[:i] + other + text[i + 1 :]
