"""Errors, with the tool's messages."""

from __future__ import annotations

from typing import TYPE_CHECKING, Sequence

if TYPE_CHECKING:
    from ._result import Document


class Error(ValueError):
    """What can be mended: in a design, in the data, or in what was asked for.

    `nearest` holds the names closest to an unknown one, best first.
    """

    nearest: list[str]

    def __init__(self, message: str, nearest: Sequence[str] = ()) -> None:
        super().__init__(message)
        self.nearest = list(nearest)


class DesignError(Error):
    """A design is wrong, or a name, number or option that was given beside it."""


class DataError(Error):
    """The characterisation data are missing or broken."""


class LimitError(Error):
    """What the tool ends with exit code 1 for, where it was asked to: a broken budget (`check=True`), a warning
    (`strict=True`), a total that grows too far (`fail_above=...`). `result` is the result all the same.
    """

    result: Document

    def __init__(self, message: str, result: Document) -> None:
        super().__init__(message)
        self.result = result


class InputWarning(UserWarning):
    """An input of a block that no design may have, or that is most likely a slip. The block computes with it."""
