"""Runs one command in a process of its own: a process loads its data once."""

from __future__ import annotations

import json
import sys

from . import Error, _zelm


def main() -> None:
    asked = json.load(sys.stdin)
    said: dict[str, object]
    try:
        _zelm.data_directory(asked["data"])
        code, out, complaints = _zelm.run(asked["words"], [(name, text) for name, text in asked["given"]])
        said = {"code": code, "out": out, "complaints": complaints}
    except Error as error:
        said = {"error": str(error), "kind": type(error).__name__, "nearest": error.nearest}
    json.dump(said, sys.stdout)


if __name__ == "__main__":
    main()
