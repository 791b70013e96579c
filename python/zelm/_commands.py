"""The tool's commands as functions: options have the names that they have there."""

from __future__ import annotations

import json
import os
import signal
import subprocess
import sys
from typing import Any, Mapping, NamedTuple, Sequence, Union

from . import _zelm
from ._design import Design, plain_json, without_lines
from ._errors import DataError, DesignError, LimitError
from ._result import Result

AnyDesign = Union[str, "os.PathLike[str]", Mapping[str, Any], Design, Result]
"""A design: a file's path, a dict as `json.load` gives it, or a `Design` with its edits."""

Vary = Union[str, Sequence[str], Mapping[str, Any]]
"""What varies: `"PATH=FROM:TO:STEP"`, several of those, or a dict from paths to `"FROM:TO:STEP"` or lists of values."""


class Estimate(Result):
    """What a design's power comes to: `totalWatts`, `groups`, `sides` with `rails`, `budgets` and more."""

    _command = "estimate"


class Sweep(Result):
    """One point for each combination of what varies: `points` with `settings` and `sides`."""

    _command = "sweep"


class Sample(Result):
    """Bands of a design whose values are distributions: `quantities`, `budgets` with the probability that they are kept,
    `indices` of the inputs that make the band.
    """

    _command = "sample"


class Explanation(Result):
    """How a quantity comes about: `value`, `unit`, and `operands` that are explained likewise."""

    _command = "explain"


class Diff(Result):
    """What differs between two designs, and what that does: `quantities`, `groups`, `settings`."""

    _command = "diff"


class Solution(Result):
    """Where limits are crossed: `crossings`, `kept`, and `value`, the last that keeps all."""

    _command = "solve"


class Fit(Result):
    """A design on every part of the catalogue: `parts`, the best first."""

    _command = "fit"


class Sensitivity(Result):
    """What moves a quantity: `rows`, those that move it most first."""

    _command = "sensitivity"


class _File(NamedTuple):
    """The file that stands for a design, and its text if that isn't the file's own."""

    name: str
    text: str | None = None
    is_dict: bool = False


def _file_of(design: AnyDesign, name: str) -> _File:
    if isinstance(design, Design):
        return _File(design.path or name, design.text(), design.path is None)
    if isinstance(design, Result):
        return _File(name, json.dumps(design.to_dict()), True)
    if isinstance(design, Mapping):
        return _File(name, plain_json(design), True)
    path = os.fspath(design)
    return _File(path if path == "-" or not path.startswith("-") else os.path.join(".", path))


def _files_of(designs: Sequence[AnyDesign], names: Sequence[str]) -> list[_File]:
    files = [_file_of(design, name) for design, name in zip(designs, names)]
    places = [os.path.abspath(file.name) for file in files]
    for i, file in enumerate(files):
        if file.text is not None and not file.is_dict and places.count(places[i]) > 1:  # two states of one file
            folder, name = os.path.split(file.name)
            files[i] = file._replace(name=os.path.join(folder, f"{names[i]} {name}"))
    return files


def _words(options: Mapping[str, Any]) -> list[str]:
    words: list[str] = []
    for name, value in options.items():
        option = "--" + name.replace("_", "-")
        if value is True:
            words.append(option)
        elif isinstance(value, (list, tuple)):
            words.extend(f"{option}={one}" for one in value)
        elif value is not None and value is not False:
            words.append(f"{option}={os.fspath(value) if isinstance(value, os.PathLike) else value}")
    return words


def _run_apart(words: list[str], given: list[tuple[str, str]]) -> tuple[int, str, list[str]]:
    """The same in another process, which loads other data than this one may have."""
    asked = json.dumps({"words": words, "given": given, "data": _zelm.data_directory()})
    answer = subprocess.run([sys.executable, "-m", "zelm._apart"], input=asked, capture_output=True, text=True)
    if answer.returncode != 0:
        raise RuntimeError(answer.stderr)
    said = json.loads(answer.stdout)
    if "error" in said:
        kind = DataError if said["kind"] == "DataError" else DesignError
        raise kind(said["error"], said["nearest"])
    return said["code"], said["out"], said["complaints"]


def _command(kind: type[Any], designs: Sequence[AnyDesign], arguments: Sequence[str], options: Mapping[str, Any],
             apart: bool = False) -> Any:
    """Runs the command of a kind of result."""
    files = _files_of(designs, ["old", "new"] if len(designs) > 1 else ["design"])
    given = [(file.name, file.text) for file in files if file.text is not None]
    dicts = [file.name for file in files if file.is_dict]
    words = [kind._command, "--json", *_words(options), *(file.name for file in files), *arguments]
    try:
        code, out, complaints = _run_apart(words, given) if apart else _zelm.run(words, given)
    except (DesignError, DataError) as error:
        raise type(error)(without_lines(str(error), dicts), error.nearest) from None
    if code >= 128:  # a signal cut it short
        signal.raise_signal(signal.Signals(code - 128))
        raise KeyboardInterrupt
    result = kind(lambda: without_lines(out, dicts))
    if code == 1:
        warned = [without_lines(line, dicts).removeprefix("warning: ") for line in complaints]
        raise LimitError("\n".join(warned) or "there are warnings", result)
    return result


def estimate(design: AnyDesign, *, start_up: bool = False, keep_going: bool = False, strict: bool = False,
             check: bool = False, html: str | os.PathLike[str] | None = None,
             xlsx: str | os.PathLike[str] | None = None, junit: str | os.PathLike[str] | None = None,
             live: str | os.PathLike[str] | None = None, by: str | None = None, top: int | None = None,
             sort: str | None = None) -> Estimate:
    """Estimates a design: watts, amperes by rail, degrees Celsius.

    start_up: adds how the junction warms up from ambient; needs thermal stages.
    keep_going: inputs that have no row in the data are warned of, and the rest is estimated.
    check, strict: a broken budget, or a warning, is a `LimitError`.
    html, xlsx, junit: files to write a report to. live: a file for a page that estimates what is typed in it.
    by: only what groups add up to, by `"in"`, `"block"`, `"rail"` or `"clock"`; top: the first so many;
    sort: by `"watts"`, `"groups"`, `"name"` or `"design"`.
    """
    options = {"start_up": start_up, "keep_going": keep_going, "strict": strict, "check": check, "html": html,
               "xlsx": xlsx, "junit": junit, "live": live, "by": by, "top": top, "sort": sort}
    result: Estimate = _command(Estimate, [design], [], options)
    return result


def _variations(vary: Vary) -> list[str]:
    if isinstance(vary, str):
        return [vary]
    if isinstance(vary, Mapping):
        return [f"{path}={values if isinstance(values, str) else ','.join(str(value) for value in values)}"
                for path, values in vary.items()]
    return list(vary)


def sweep(design: AnyDesign, vary: Vary, *, columns: str | Sequence[str] | None = None,
          html: str | os.PathLike[str] | None = None, jobs: int | None = None, strict: bool = False,
          keep_going: bool = False) -> Sweep:
    """Estimates a design once for each combination of values, the last variation changing fastest.

    vary: `["environment.ambientTemperature=0:80:10", ...]` or `{"rails.VCCINT": [0.78, 0.8, 0.82], ...}`; plain
    numbers count in the unit of what they replace, others say theirs: `"100MHz:400MHz:50MHz"`.
    columns: what to tell of each point, `["total@MAX", "rail:VCCINT"]`, in place of the sides. html: a file for charts.
    jobs: how many points at once; else as many as there are processors.
    """
    told = columns if columns is None or isinstance(columns, str) else ",".join(columns)
    options = {"vary": _variations(vary), "columns": told, "html": html, "jobs": jobs, "strict": strict,
               "keep_going": keep_going}
    result: Sweep = _command(Sweep, [design], [], options)
    return result


def sample(design: AnyDesign, *, points: int | None = None, seed: int | None = None, method: str | None = None,
           of: str | None = None, until_error: str | float | None = None, no_data_uncertainty: bool = False,
           html: str | os.PathLike[str] | None = None, jobs: int | None = None) -> Sample:
    """Estimates a design whose values are distributions, for bands of its quantities (W, A, degrees Celsius).

    points: how many estimates, 4096 unless given; until_error: end once the totals' quantiles are known as well as
    that, `"1%"`. seed: which draw. method: `"sobol"`, `"latin"` or `"random"`.
    of: whose band is laid to the inputs, `"total"` unless given. no_data_uncertainty: the data are taken as exact.
    html: a file for histograms and bands. jobs: how many points at once; else as many as there are processors.
    """
    options = {"points": points, "seed": seed, "method": method, "of": of, "until_error": until_error,
               "no_data_uncertainty": no_data_uncertainty, "html": html, "jobs": jobs}
    result: Sample = _command(Sample, [design], [], options)
    return result


def explain(design: AnyDesign, what: str, *, depth: int | None = None, keep_going: bool = False) -> Explanation:
    """Tells how a quantity comes about, down to what was typed or characterised.

    what: `total`, `dynamic`, `static` (W), `junction` (degrees Celsius), `rail:NAME` (A), `group:NAME` (W) or
    `group:NAME.CELL`, each with `@TYP` or `@MAX`.
    depth: how many levels down.
    """
    result: Explanation = _command(Explanation, [design], [what], {"depth": depth, "keep_going": keep_going})
    return result


def diff(old: AnyDesign, new: AnyDesign, *, old_datadir: str | os.PathLike[str] | None = None,
         fail_above: str | None = None, html: str | os.PathLike[str] | None = None) -> Diff:
    """Tells what differs between two designs, and what each difference does (W, A, degrees Celsius).

    old: a design, or an earlier `Estimate` or its dict. old_datadir: the data directory before.
    fail_above: the total may grow by that much, `"2%"` or `"500mW"`, before it is a `LimitError`.
    html: a file to write waterfall charts to.
    """
    options = {"old_datadir": old_datadir, "fail_above": fail_above, "html": html}
    result: Diff = _command(Diff, [old, new], [], options, apart=old_datadir is not None)
    return result


def solve(design: AnyDesign, vary: str, until: str | Sequence[str], *, jobs: int | None = None) -> Solution:
    """Finds the values of a place of the design at which limits are crossed.

    vary: `"environment.thetaJA=0.5:20"`. until: `"junction@MAX <= 85 C"`, or several limits.
    """
    options = {"vary": vary, "until": [until] if isinstance(until, str) else list(until), "jobs": jobs}
    result: Solution = _command(Solution, [design], [], options)
    return result


def fit(design: AnyDesign, *, speed: str | None = None, temperature: str | None = None, package: str | None = None,
        jobs: int | None = None) -> Fit:
    """Estimates a design on each orderable part of the catalogue (W, degrees Celsius by process side).

    speed, temperature, package: only parts of that grade or package.
    """
    options = {"speed": speed, "temperature": temperature, "package": package, "jobs": jobs}
    result: Fit = _command(Fit, [design], [], options)
    return result


def sensitivity(design: AnyDesign, *, of: str | None = None, span: str | float | None = None, top: int | None = None,
                html: str | os.PathLike[str] | None = None, jobs: int | None = None) -> Sensitivity:
    """Moves every input a little, and sorts them by what that does to a quantity.

    of: the quantity, `"total"` unless given, in its unit. span: how far, as a share of the value: `"10%"` or 0.1.
    top: only the first so many inputs. html: a file to write a tornado chart to.
    """
    options = {"of": of, "span": span, "top": top, "html": html, "jobs": jobs}
    result: Sensitivity = _command(Sensitivity, [design], [], options)
    return result
