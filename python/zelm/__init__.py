"""Power estimation for the Orvane generation of programmable SoCs.

    import zelm
    result = zelm.estimate("design.json")       # or a dict
    result.totalWatts, result.to_frame("rails")

Functions have the names, options and results of the tool's commands; docs/python.md goes through them. Numbers are in
the units that their names tell, temperatures in degrees Celsius.
"""

from __future__ import annotations

import os
import pathlib

from . import _zelm
from ._blocks import Block, Cell, Cells, block, blocks
from ._commands import (Diff, Estimate, Explanation, Fit, Sample, Sensitivity, Solution, Sweep, diff, estimate,
                        explain, fit, sample, sensitivity, solve, sweep)
from ._design import Design
from ._errors import DataError, DesignError, Error, InputWarning, LimitError
from ._result import Document, Result, Rows

__version__: str = _zelm.version

__all__ = [
    "Block", "Cell", "Cells", "DataError", "Design", "DesignError", "Diff", "Document", "Error", "Estimate",
    "Explanation", "Fit", "InputWarning", "LimitError", "Result", "Rows", "Sample", "Sensitivity", "Solution", "Sweep",
    "block", "blocks", "data_directory", "diff", "estimate", "explain", "fit", "sample", "sensitivity", "solve",
    "sweep",
]

_packaged = pathlib.Path(__file__).with_name("data")
if (_packaged / "powercfg").is_dir():
    _zelm.set_packaged_data(str(_packaged))


def data_directory(path: str | os.PathLike[str] | None = None) -> str:
    """Chooses the characterisation data, before they are first used; returns the directory in use.

    Several directories are separated by ':'. Unless one is chosen it is QTA_DATADIR's, else the data that came with the
    package.
    """
    return _zelm.data_directory(None if path is None else os.fspath(path))
