"""Designs that are edited and estimated again."""

from __future__ import annotations

import json
import os
from typing import TYPE_CHECKING, Any, Iterable, Mapping

from . import _zelm
from ._errors import DataError, DesignError

if TYPE_CHECKING:
    from ._commands import Estimate


def plain_json(value: Any) -> str:
    """A value as JSON; numpy's numbers and arrays are such values, too."""
    return json.dumps(value, default=lambda other: other.tolist())


def without_lines(text: str, names: Iterable[str]) -> str:
    """What is said of designs of these names, which are dicts and have no lines."""
    for name in names:
        text = text.replace(f"{name}:1: ", f"{name}: ")
    return text


class Design:
    """A design, edited by path and estimated again at the cost of what the edits reach.

    `Design("design.json")` reads a file, `Design({...})` takes a dict. Paths are those of messages and of
    `sweep`: `design["groups[core clock].inputs.CLOCK_FREQ"] = 322` (MHz, the cell's unit), or `"322 MHz"`.
    """

    def __init__(self, design: str | os.PathLike[str] | Mapping[str, Any]) -> None:
        self.path: str | None = None
        """The file that the design was read from, and that `save` writes."""
        if isinstance(design, Mapping):
            try:
                self._design = _zelm.Design("design", plain_json(design))
            except (DesignError, DataError) as error:
                raise type(error)(without_lines(str(error), ["design"]), error.nearest) from None
        else:
            self.path = os.fspath(design)
            self._design = _zelm.Design(self.path, _zelm.read_file(self.path))

    @classmethod
    def load(cls, path: str | os.PathLike[str]) -> Design:
        """Reads a design file."""
        return cls(os.fspath(path))

    def __getitem__(self, path: str) -> Any:
        """What the design says at a path, as it is written: a number in the cell's unit, or a text."""
        return json.loads(self._design.get(path))

    def __setitem__(self, path: str, value: Any) -> None:
        """Puts a value there. Whether it is legal is told by the next estimate."""
        self._design.set(path, plain_json(value))

    def estimate(self, *, keep_going: bool = False, curves: bool = False) -> Estimate:
        """Estimates the design (W, A, degrees Celsius). Only what edits since the last time reach is computed again.

        curves: with each side's power over the junction's temperature, as `zelm.estimate` has it; all of the design
        is computed for that, else `curve` is empty.
        """
        from ._commands import Estimate

        dicts = ["design"] if self.path is None else []
        try:
            made = self._design.estimate_with_curves(keep_going) if curves else self._design.estimate(keep_going)
        except (DesignError, DataError) as error:
            raise type(error)(without_lines(str(error), dicts), error.nearest) from None
        return Estimate(lambda: without_lines(made.json(), dicts))

    def value(self, quantity: str, *, keep_going: bool = False) -> float:
        """A quantity of that estimate by its name, as `explain` has it: `"total@MAX"` (W), `"junction"` (degrees
        Celsius), `"rail:VCCINT"` (A), `"group:NAME"` (W). NaN where the device runs away. The quick way in loops.
        """
        return self._design.value(quantity, keep_going)

    def text(self) -> str:
        """The design file's text with the edits. Without edits it is the file's; with some it is in the form that
        `zelm format` gives, and comments are gone.
        """
        return self._design.text()

    def save(self, path: str | os.PathLike[str] | None = None) -> None:
        """Writes that text to a file, the design's own unless one is named, whole or not at all."""
        if path is None and self.path is None:
            raise ValueError("a design that was read from no file needs a path to be saved to")
        self._design.save(os.fspath(path) if path is not None else str(self.path))

    def to_dict(self) -> dict[str, Any]:
        """The design with its edits and what it includes, as a dict."""
        return json.loads(self._design.get(""))  # type: ignore[no-any-return]

    def __repr__(self) -> str:
        return f"Design({self.path or 'dict'!r})"
