#!/usr/bin/env python3
"""No call in a formula pulls two operands: compilers take arguments in different orders.

one_pull_at_a_time.py SOURCE_DIR FOLDER...
"""
import pathlib
import re
import sys

PULL = re.compile(r"(?<![\w:.])(?:self\(\)\.)?(?:[A-Z]\w*\(\)|(?:find[A-Z]\w*|value|runsOn)\()")
CALL = re.compile(r"\b(?!if\b|for\b|while\b|switch\b)[A-Za-z_]\w*(?:<[^<>()]*>)?\(")


def arguments(text: str, begin: int) -> list[str]:
    """Of the call whose parenthesis opens just before; none where a statement ends within, as in a macro's rows."""
    found, depth, start = [], 1, begin
    for place in range(begin, len(text)):
        letter = text[place]
        depth += (letter in "({[") - (letter in ")}]")
        if depth == 0:
            return [*found, text[start:place]]
        if letter == ";":
            return []
        if letter == "," and depth == 1:
            found.append(text[start:place])
            start = place + 1
    return []


def doubled(text: str) -> list[tuple[int, str]]:
    """Lines and calls with more than one argument that pulls."""
    calls = ((call, arguments(text, call.end())) for call in CALL.finditer(text))
    return [
        (text.count("\n", 0, call.start()) + 1, call.group() + ",".join(given) + ")")
        for call, given in calls
        if sum(bool(PULL.search(one)) for one in given) > 1
    ]


def main(source: pathlib.Path, folders: list[str]) -> int:
    assert doubled("f(A(), 2.0f * B());") and doubled('g(findC("X"), MAX(value(d), 0.0f))')
    assert not doubled("const float a = A();\nf(a, B(), C::d);") and not doubled("return {A(), B()};")
    read = 0
    wrong = []
    for folder in folders:
        for pattern in ("*Model.cpp", "*Sheet.h", "*.inc"):
            for path in sorted((source / folder).glob(pattern)):
                read += 1
                wrong += [
                    f"{path.relative_to(source)}:{line}: {' '.join(call.split())}" for line, call in doubled(path.read_text())
                ]
    print("\n".join(wrong) or f"{read} sources pull one operand at a time")
    return 1 if wrong or read < 46 else 0  # a model each, and what some share


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]), sys.argv[2:]))
