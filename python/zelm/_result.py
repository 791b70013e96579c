"""Results: the documents that the tool prints as JSON, with attributes."""

from __future__ import annotations

import html
import importlib
import json
from typing import Any, Callable, Iterable, Iterator, Mapping, Sequence, overload

# The names by which rows of a list are known.
_KEYS = ("name", "rail", "process", "cell", "path", "part", "quantity", "group", "resource")


def _view(value: Any) -> Any:
    if isinstance(value, dict):
        return Document(value)
    if isinstance(value, list):
        return Rows(value)
    return value


class Document:
    """A JSON object whose fields are attributes: `result.totalWatts`, `result.groups[0].watts`.

    Amounts carry their unit in the field's name: watts (W), amperes (A), volts (V), seconds, joules;
    temperatures are in degrees Celsius. A field that is no name in Python is had by `result["..."]`.
    """

    def __init__(self, fields: Mapping[str, Any]) -> None:
        self._loaded: dict[str, Any] | None = dict(fields)

    def _fields(self) -> dict[str, Any]:
        assert self._loaded is not None
        return self._loaded

    def __getattr__(self, name: str) -> Any:
        if name.startswith("_"):
            raise AttributeError(name)
        fields = self._fields()
        if name not in fields:
            raise AttributeError(f"there is no field {name}; there are {', '.join(fields)}")
        return _view(fields[name])

    def __getitem__(self, name: str) -> Any:
        return _view(self._fields()[name])

    def __contains__(self, name: object) -> bool:
        return name in self._fields()

    def __iter__(self) -> Iterator[str]:
        return iter(self._fields())

    def __dir__(self) -> Iterable[str]:
        return [*super().__dir__(), *(name for name in self._fields() if name.isidentifier())]

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Document) and self._fields() == other._fields()

    __hash__ = None  # type: ignore[assignment]

    def __repr__(self) -> str:
        fields = ", ".join(f"{name}={_brief(value)}" for name, value in self._fields().items())
        return f"{type(self).__name__}({fields})"

    def to_dict(self) -> dict[str, Any]:
        """The whole document as dicts and lists: what the tool prints with `--json`."""
        return json.loads(json.dumps(self._fields()))  # type: ignore[no-any-return]


class Rows(Sequence[Any]):
    """A JSON list. Rows that have names are had by them as well: `result.groups["core clock"]`."""

    def __init__(self, rows: Sequence[Any]) -> None:
        self._rows = rows

    @overload
    def __getitem__(self, which: int | str) -> Any: ...
    @overload
    def __getitem__(self, which: slice) -> Rows: ...
    def __getitem__(self, which: int | str | slice) -> Any:
        if isinstance(which, slice):
            return Rows(self._rows[which])
        if isinstance(which, int):
            return _view(self._rows[which])
        for row in self._rows:
            if isinstance(row, dict) and which in (row.get(key) for key in _KEYS):
                return Document(row)
        raise KeyError(which)

    def __len__(self) -> int:
        return len(self._rows)

    def __eq__(self, other: object) -> bool:
        rows = other._rows if isinstance(other, Rows) else other
        return isinstance(rows, list) and list(self._rows) == rows

    __hash__ = None  # type: ignore[assignment]

    def __repr__(self) -> str:
        return repr([_view(row) for row in self._rows])

    def to_list(self) -> list[Any]:
        """The rows as dicts and lists."""
        return json.loads(json.dumps(self._rows))  # type: ignore[no-any-return]

    def to_frame(self) -> Any:
        """The rows as a pandas DataFrame; fields of objects within are columns `outer.inner`."""
        return _frame([_flat(row) if isinstance(row, dict) else {"value": row} for row in self._rows])


class Result(Document):
    """What a command of the tool results in."""

    _command = ""

    def __init__(self, load: Callable[[], str]) -> None:
        self._load = load
        self._loaded = None

    def __getstate__(self) -> dict[str, Any]:
        return {"_loaded": self._fields()}  # for other processes

    def _fields(self) -> dict[str, Any]:
        if self._loaded is None:
            self._loaded = json.loads(self._load())
        return self._loaded

    def tables(self) -> list[str]:
        """The names that `to_frame` takes, its default first."""
        fields = self._fields()
        lists = [name for name in _TABLES.get(self._command, ()) if name in fields]
        if any("rails" in side for side in fields.get("sides", ())):
            lists.insert(1, "rails")
        return lists

    def to_frame(self, table: str | None = None) -> Any:
        """A table of the result as a pandas DataFrame, the one that matters most if none is named.

        An estimate has `groups`, `rails` (one row for each rail and process side), `budgets`, `sides` and more:
        `tables()` names them. Units are those of the fields: watts, amperes, volts, degrees Celsius.
        """
        known = self.tables()
        if not known:
            raise ValueError("this result has no tables")
        name = known[0] if table is None else table
        if name not in known:
            raise ValueError(f"there is no table {name}; there are {', '.join(known)}")
        return _frame(self._rows_of(name))

    def _rows_of(self, name: str) -> list[dict[str, Any]]:
        fields = self._fields()
        if name == "rails":
            return [{"process": side["process"], **rail} for side in fields["sides"] for rail in side["rails"]]
        rows = fields[name]
        if name == "points":
            rows = [{**point, **side} for point in rows for side in point.get("sides") or [{}]]
        return [_flat(row) for row in rows]

    def _repr_html_(self) -> str:
        """A short table for notebooks."""
        most = 12
        head = html.escape(", ".join(_headline(self._fields())))
        known = self.tables()
        if not known:
            return f"<p>{head}</p>"
        rows = self._rows_of(known[0])
        if known[0] == "groups":
            rows = sorted(rows, key=lambda row: -float(row.get("watts") or 0.0))
        columns = [name for name in (rows[0] if rows else {}) if not isinstance(rows[0][name], (dict, list))][:8]
        cells = "".join(
            "<tr>" + "".join(f"<td>{html.escape(_brief(row.get(name)))}</td>" for name in columns) + "</tr>"
            for row in rows[:most]
        )
        more = f"<p>and {len(rows) - most} more</p>" if len(rows) > most else ""
        heads = "".join(f"<th>{html.escape(name.removeprefix('settings.'))}</th>" for name in columns)
        return f"<p>{head}</p><table><thead><tr>{heads}</tr></thead><tbody>{cells}</tbody></table>{more}"


# The lists of results that are tables, the one that matters most first.
_TABLES = {
    "estimate": ("groups", "budgets", "sides", "hierarchy", "cooling", "utilisation", "carried", "dataFiles", "subtotals"),
    "sweep": ("points", "crossings"),
    "sample": ("quantities", "budgets", "indices", "rankCorrelations", "distributions", "data", "warnings"),
    "diff": ("quantities", "groups", "settings"),
    "solve": ("crossings", "kept"),
    "fit": ("parts",),
    "sensitivity": ("rows",),
    "explain": ("operands", "lookUps"),
}


def _flat(row: Mapping[str, Any], scope: str = "") -> dict[str, Any]:
    flat: dict[str, Any] = {}
    for name, value in row.items():
        if isinstance(value, dict):
            flat.update(_flat(value, f"{scope}{name}."))
        else:
            flat[scope + name] = value
    return flat


def _frame(rows: list[dict[str, Any]]) -> Any:
    try:
        pandas: Any = importlib.import_module("pandas")
    except ImportError as missing:
        raise ImportError("to_frame needs pandas, which isn't installed") from missing
    return pandas.DataFrame(rows)


def _brief(value: Any) -> str:
    if isinstance(value, float):
        return f"{value:.4g}"
    if isinstance(value, dict):
        return "{...}"
    if isinstance(value, list):
        return f"[{len(value)}]"
    return "" if value is None else repr(value) if isinstance(value, bool) else str(value)


def _headline(fields: Mapping[str, Any]) -> list[str]:
    units = {"totalWatts": "W in all", "dynamicWatts": "W dynamic", "staticWatts": "W static"}
    words = [str(fields["name"])] if "name" in fields else []
    for name, unit in units.items():
        if isinstance(fields.get(name), (int, float)):
            words.append(f"{fields[name]:.4g} {unit}")
    for side in fields.get("sides", ()):
        if isinstance(side.get("junctionTemperature"), (int, float)):
            words.append(f"{side['junctionTemperature']:.2f} °C {side['process']}".rstrip())
    if "quantity" in fields:
        words.append(str(fields["quantity"]))
    return words
