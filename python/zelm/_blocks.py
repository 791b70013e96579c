"""Blocks: one kind of resource, its cells, and its formulas over arrays."""

from __future__ import annotations

import json
import warnings
from typing import Any, Iterable, Iterator, Mapping, NamedTuple, Sequence, Union

import numpy
import numpy.typing

from . import _zelm
from ._errors import InputWarning

_ma: Any = numpy.ma  # which tells no types

Input = Union[None, int, float, str, Sequence[Any], "numpy.typing.NDArray[Any]"]
"""A number in the cell's unit, a text (a word, or a number with its unit: "250 MHz"), an array of those, or None."""


class Cell(NamedTuple):
    """One cell of a block."""

    name: str
    kind: str
    """input, output or intermediate"""
    type: str
    """int, float or string"""
    unit: str
    """of numbers; empty for plain ones"""
    default: int | float | str | None
    """of an input; None if it follows from other cells"""
    legal: str
    """what an input takes, in words"""
    goes_to: str
    """where an output goes: a rail, off chip, ..."""
    meaning: str


class Cells(Mapping[str, Any]):
    """Values of cells by name: `out["SIGNAL_POWER"]` or `out.SIGNAL_POWER`, in the cell's unit."""

    def __init__(self, values: Mapping[str, Any]) -> None:
        self._values = dict(values)

    def __getitem__(self, name: str) -> Any:
        return self._values[name]

    def __getattr__(self, name: str) -> Any:
        if name.startswith("_") or name not in self._values:
            raise AttributeError(name)
        return self._values[name]

    def __dir__(self) -> Iterable[str]:
        return [*super().__dir__(), *self._values]

    def __iter__(self) -> Iterator[str]:
        return iter(self._values)

    def __len__(self) -> int:
        return len(self._values)

    def __repr__(self) -> str:
        return f"Cells({', '.join(f'{name}={value!r}' for name, value in self._values.items())})"


class Block:
    """A kind of resource, by its name in designs: `zelm.block("Signal")`."""

    def __init__(self, name: str) -> None:
        _, text, _ = _zelm.run(["cells", "--json", "--", name], [])
        self.name = name
        self.cells = [_cell(entry) for entry in json.loads(text)["cells"]]
        """All cells, in the block's order."""
        self._by_name = {cell.name: cell for cell in self.cells}

    def __repr__(self) -> str:
        return f"Block({self.name!r})"

    def cell(self, name: str) -> Cell:
        """A cell by its name."""
        if name not in self._by_name:
            _zelm.calc(self.name, [], [name], 0)  # whose error names the nearest
        return self._by_name[name]

    def calc(self, *, cells: str | Iterable[str] = "output", **inputs: Input) -> Cells:
        """Calculates the block, once for each element of the inputs, which are broadcast against each other.

        Inputs are in their cells' units. None, NaN and masked elements are unset: the cell takes its default.
        cells: which to return, by name, or all of a kind: `"output"`, `"intermediate"`, `"input"`, `"all"`.

        Floats come as float32, to the last bit what the tool computes, ints as int32, texts as objects; numbers and
        texts where all inputs are, else arrays of the inputs' shape. What is unset (a look-up found no row, or no
        formula asked for the cell) is None, or in arrays masked, with NaN (floats) or 0 (ints) below the mask.

        Other threads run meanwhile. An input that no design may have is an `InputWarning`, as in the tool; of
        arrays of numbers the least and the greatest are looked at.
        """
        wanted = self._wanted(cells)
        arrays = {name: _array(value) for name, value in inputs.items()}
        shape = numpy.broadcast_shapes(*(array.shape for array in arrays.values()))
        size = int(numpy.prod(shape, dtype=numpy.int64))
        given = [self._column(name, array, shape) for name, array in arrays.items()]
        results, doubts = _zelm.calc(self.name, given, wanted, size)
        for doubt in doubts:
            warnings.warn(doubt, InputWarning, stacklevel=2)
        return Cells({name: _values(*result, shape) for name, result in zip(wanted, results)})

    def _wanted(self, cells: str | Iterable[str]) -> list[str]:
        if not isinstance(cells, str):
            return [self.cell(name).name for name in cells]
        kinds = ("input", "output", "intermediate") if cells == "all" else (cells,)
        found = [cell.name for cell in self.cells if cell.kind in kinds]
        return found or [self.cell(cells).name]

    def _column(self, name: str, array: Any, shape: tuple[int, ...]) -> tuple[str, Any, list[str] | None]:
        known = self._by_name.get(name)
        is_text = known is None or known.type == "string"
        words: list[str] | None = None
        if array.dtype.kind in "OUS" or is_text:
            array, words = _coded(array)
        else:
            number = numpy.float32 if known is not None and known.type == "float" else numpy.float64
            with numpy.errstate(over="ignore"):  # told as no finite number
                array = _ma.filled(array.astype(number), numpy.nan)
        if array.size != 1:
            array = numpy.broadcast_to(array, shape)
        return name, numpy.ascontiguousarray(array).reshape(-1), words


def _array(value: Input) -> Any:
    return value if isinstance(value, numpy.ndarray) else numpy.asarray(value)


def _word(item: Any) -> str | None:
    if item is None or item != item:
        return None
    return item.decode() if isinstance(item, bytes) else str(item)


def _coded(array: Any) -> tuple[Any, list[str]]:
    """Texts, and what else is no plain number, as places in a list of words: -1 is unset."""
    items = _ma.getdata(array).reshape(-1).tolist()
    if array.dtype.kind != "U":
        items = [_word(item) for item in items]
    words = sorted({item for item in items if item is not None})
    places: dict[str | None, int] = {None: -1, **{word: place for place, word in enumerate(words)}}
    codes = numpy.fromiter(map(places.__getitem__, items), numpy.int32, len(items)).reshape(array.shape)
    if isinstance(array, numpy.ma.MaskedArray):
        codes[_ma.getmaskarray(array)] = -1
    return codes, words


def _cell(entry: Mapping[str, str]) -> Cell:
    default: int | float | str | None = entry["default"]
    if entry["kind"] != "input" or default == "derived":
        default = None
    elif entry["type"] != "string":
        default = (int if entry["type"] == "int" else float)(entry["default"])
    return Cell(entry["cell"], entry["kind"], entry["type"], entry["unit"], default, entry.get("legal", ""),
                entry.get("goesTo", ""), entry["meaning"])


def _values(values: Any, unset: Any, words: list[str] | None, shape: tuple[int, ...]) -> Any:
    if words is not None:
        values = numpy.array([*words, None], dtype=object)[values if words else numpy.full(len(values), -1)]
    if shape == ():
        return None if unset is not None else values[0] if words is None else str(values[0])
    if unset is None:
        return values.reshape(shape)
    if words is not None:
        values[unset] = None
    return _ma.masked_array(values.reshape(shape), unset.reshape(shape))


def block(name: str) -> Block:
    """A block by its name; `zelm.blocks()` lists them."""
    return Block(name)


def blocks() -> list[str]:
    """The names of all blocks."""
    _, text, _ = _zelm.run(["blocks", "--json"], [])
    return [entry["block"] for entry in json.loads(text)["blocks"]]
