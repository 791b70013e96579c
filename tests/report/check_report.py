#!/usr/bin/env python3
"""Opens the HTML report of each design in headless Chromium without a network, and compares what it shows with the JSON.

check_report.py ZELM CHROMIUM DESIGN..."""
import html.parser
import json
import pathlib
import re
import subprocess
import sys
import tempfile

# The report in a frame as wide as a small phone, and what can be asked only of a page that is laid out.
FRAME = r"""<!doctype html><title>frame</title><iframe src="report.html" style="width:390px;height:800px;border:0"></iframe>
<pre id="asked"></pre><script>
'use strict';
const frame = document.querySelector('iframe');
frame.onload = () => setTimeout(() => {
  const page = frame.contentDocument, view = frame.contentWindow;
  // Every number that can be asked opens its explanation: a button, so by keyboard too.
  const dialog = page.getElementById('why'), asked = {};
  for (const button of page.querySelectorAll('button.why')) {
    if (button.tabIndex !== 0) throw new Error('the keyboard does not reach ' + button.textContent);
    button.click();
    if (!dialog.open) throw new Error('nothing opens for ' + button.textContent);
    const name = page.getElementById('why-h').textContent;
    (asked[name.slice(0, name.lastIndexOf(' = '))] ||= []).push([button.textContent, page.getElementById('why-tree').textContent.slice(0, 4000)]);
    dialog.close();
  }
  if (page.querySelector('summary + *') === null || page.querySelectorAll('.lines > details[open]').length) throw new Error('a number in a line opens the line');
  document.getElementById('asked').textContent = JSON.stringify({
    pageWidth: page.documentElement.scrollWidth,
    fetched: view.performance.getEntriesByType('resource').map(entry => entry.name).filter(name => !name.startsWith('data:')),
    text: page.body.innerText,
    explained: asked,
    html: page.body.outerHTML.replace(/<script[^]*?<\/script>/g, ''),
  });
}, 500);
</script>"""
PREFIXES = {"": 1.0, "m": 1e-3, "µ": 1e-6, "n": 1e-9, "p": 1e-12}


class Page(html.parser.HTMLParser):
    """Tables by caption, headings, the names of charts, and the groups' power by name."""

    def __init__(self):
        super().__init__()
        self.tables, self.uncaptioned, self.headings, self.charts, self.groups = {}, 0, [], [], {}
        self.svgs, self.answers, self.links, self.ids = 0, [], [], set()
        self.rows, self.captioned, self.into, self.text, self.group = None, False, None, "", []

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if "id" in attributes:
            self.ids.add(attributes["id"])
        if tag == "table":
            self.rows, self.captioned = [], False
        elif tag == "tr":
            self.rows.append([])
        elif tag in ("td", "th", "caption"):
            self.into, self.text = tag, ""
            assert tag != "th" or attributes.get("scope") in ("row", "col"), "a heading cell says what it heads"
        elif tag == "span" and attributes.get("class") == "group":
            self.group = []
        elif tag == "p" and attributes.get("class") == "answer":
            self.into, self.text = tag, ""
        elif re.fullmatch("h[1-6]", tag):
            self.headings.append(int(tag[1]))
        elif tag == "svg":
            self.svgs += 1
            if attributes.get("role") == "img":
                self.charts.append(attributes.get("aria-label", ""))
        elif tag == "div" and attributes.get("class") == "chart":
            self.charts.append(attributes.get("aria-label", "") if attributes.get("role") == "img" else "")
        elif tag == "a":
            self.links.append(attributes["href"])

    def handle_endtag(self, tag):
        if tag == self.into:
            if tag == "caption":
                self.tables[self.text], self.captioned = self.rows, True
            elif tag == "p":
                self.answers.append(self.text)
            else:
                self.rows[-1].append(self.text)
            self.into = None
        elif tag == "table":
            self.uncaptioned += not self.captioned
        elif tag == "summary" and self.group:
            self.groups.setdefault(self.group[0], []).append(self.group[-1])
            self.group = []

    def handle_data(self, data):
        if self.into:
            self.text += data
        self.group.append(data)


def si(value, unit):
    size = abs(value)
    factor, sign = next(((f, s) for s, f in PREFIXES.items() if size >= f), (1e-12, "p")) if size else (1.0, "")
    scaled = value / factor
    digits = 1 if abs(scaled) >= 99.995 else 2 if abs(scaled) >= 9.9995 else 3
    return f"{scaled:.{digits}f} {sign}{unit}".replace("-", "−")


def agrees(shown, heading, value):
    """Whether a cell shows the value in its column's unit, to all the decimals that it has."""
    factor = PREFIXES[re.search(r", (.?)[WA]$", heading)[1]]
    number = shown.removeprefix("< ").replace("−", "-")
    last = factor * 10.0 ** -len(number.partition(".")[2])
    if shown.startswith("< "):
        return 0 < abs(value) < last
    return abs(float(number) * factor - value) <= 0.500001 * last


def browse(chromium, page, profile):
    return subprocess.run(
        [chromium, "--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-sync",
         "--disable-background-networking", "--disable-component-update", "--host-resolver-rules=MAP * ~NOTFOUND",
         "--allow-file-access-from-files", f"--user-data-dir={profile}", "--enable-logging=stderr",
         "--virtual-time-budget=5000", "--dump-dom", page.as_uri()],
        capture_output=True, text=True, timeout=120)


def check_page(shown, asked):
    assert shown.headings.count(1) == 1, f"headings {shown.headings}"
    assert shown.headings[0] == 1 and all(b - a <= 1 for a, b in zip(shown.headings, shown.headings[1:])), \
        f"headings skip a level: {shown.headings}"
    assert not shown.uncaptioned, f"{shown.uncaptioned} tables have no caption"
    assert all(len(name) > 20 for name in shown.charts), f"charts without a name: {shown.charts}"
    assert shown.svgs >= len(shown.charts), f"{shown.svgs} of {len(shown.charts)} charts were drawn"
    assert all(link[1:] in shown.ids for link in shown.links), f"links that lead nowhere: {shown.links}"
    assert asked["pageWidth"] <= 390, f"the page is {asked['pageWidth']} pixels wide on a screen of 390"
    assert asked["fetched"] == [], f"the page fetches {asked['fetched']}"


def check_numbers(shown, asked, expected):
    for side, answer in zip(expected["sides"], shown.answers, strict=True):
        if side.get("thermal", {"converged": True})["converged"]:
            assert si(side["totalWatts"], "W") in answer, f"{answer} instead of {side['totalWatts']} W"
            assert not side["process"] or f"{side['junctionTemperature']:.2f} °C".replace("-", "−") in answer, answer
        else:
            assert side["totalWatts"] is None and "thermal runaway" in answer and side["thermal"]["words"] in asked["text"], answer
    for budget in expected["budgets"]:
        table, name = ("Regulators: load and margin", budget["name"].removeprefix("regulator of ")) \
            if budget["name"].startswith("regulator of ") else ("Budgets and limits", budget["name"])
        row = next(row for row in shown.tables[table] if row[0] == name)
        assert ("✗" in row[1]) == budget["broken"] and (budget["broken"] or "kept" in row[1]), f"budget {row}"

    rails = shown.tables.get("Rails", [[]])
    heading, rows = rails[0], {row[0].removesuffix(" *"): row for row in rails[1:]}
    for rail in expected["sides"][0]["rails"]:
        if not rail["totalAmperes"]:
            continue
        row = rows[rail["rail"]]
        for column, cell in ((2, "staticAmperes"), (3, "dynamicAmperes"), (4, "totalAmperes"), (5, "watts")):
            assert agrees(row[column], heading[column], rail[cell]), f"{heading[column]} of {row} is {rail[cell]}"
    if expected["sides"][0]["totalWatts"]:
        for table, column in (("Power by block", 1), ("Rails", 5)):
            heading, total = shown.tables[table][0], shown.tables[table][-1]
            assert total[0] == "Total" and agrees(total[column], heading[column], expected["totalWatts"]), total

    for group in expected["groups"]:
        name = group["name"]
        wanted = group["title"] if group["onlyCarries"] else si(group["watts"], "W")
        assert any(shown_as.startswith(wanted) for shown_as in shown.groups[name]), f"{name}: {shown.groups[name]}"
        inputs = next(rows for caption, rows in shown.tables.items() if re.match(re.escape(name) + r": \d+ inputs", caption))
        assert [(row[0], row[3]) for row in inputs[1:]] == [(i["cell"], i["origin"]) for i in group["inputs"]], name
        if group["outputs"]:
            table = shown.tables[f"{name}: outputs"]
            for row, output in zip(table[1:], group["outputs"], strict=True):
                assert row[:2] == [output["cell"], output["rail"]], f"{name}: {row}"
                assert agrees(row[2], table[0][2], output["watts"]) and agrees(row[3], table[0][3], output["amperes"]), row
    files = {row[0]: row[1] for row in shown.tables["Data files"][1:]}
    assert files == {file["name"]: file["sha256"] for file in expected["dataFiles"]}
    for warning in expected["warnings"]:
        assert warning.rpartition(": ")[2] in asked["text"], f"no word of: {warning}"
    assert f"zelm {expected['version']}" in asked["text"]
    return len(rows)


def check_explanations(asked, expected):
    """Every number of totals, rails and groups has its explanation."""
    told = asked["explained"]
    for side in expected["sides"]:
        at = "@" + side["process"] if side["process"] else ""
        settles = side.get("thermal", {"converged": True})["converged"]
        wanted = ["total" + at] + (["static" + at, "junction" + at] if at and settles else [])
        wanted += [f"rail:{rail['rail']}{at}" for rail in side["rails"] if rail["totalAmperes"]]
        for name in wanted:
            assert name in told, f"{name} isn't explained"
        if settles and side["totalWatts"]:
            (shown, tree), *_ = told["total" + at]
            assert shown == si(side["totalWatts"], "W") and "power on the chip" in tree, (shown, tree)
    for group in expected["groups"]:
        if group["onlyCarries"]:
            continue
        (shown, tree), *_ = told["group:" + group["name"]]
        assert shown == si(group["watts"], "W"), f"{group['name']}: {shown}"
        for output in group["outputs"]:
            assert not output["watts"] or f"group:{group['name']}.{output['cell']} in W = " in tree, f"{group['name']}: {tree}"
            assert not output["amperes"] or f"group:{group['name']}.{output['cell']} in A" in told, output
        if any(output["watts"] for output in group["outputs"]):
            assert any(f"group:{group['name']}.{i['cell']}" in told for i in group["inputs"]), group["name"]


def check_supplies(shown, expected):
    sides = expected["sides"]
    heading, *rows = shown.tables["Supplies"]
    wanted = [(side["process"], supply) for supplies in zip(*(side["supplies"]["supplies"] for side in sides))
              for side, supply in zip(sides, supplies)]
    for row, (process, supply) in zip(rows, wanted):
        assert row[0] in ("", supply["name"]) and row[2] == process, row
        for column, field in ((5, "loadAmperes"), (8, "powerUpAmperes"), (10, "lossWatts"), (11, "inputWatts")):
            assert agrees(row[column], heading[column], supply[field]), f"{heading[column]} of {row} is {supply[field]}"
    for row, side in zip(rows[len(wanted):], sides, strict=True):
        assert row[0] == "Board input" and agrees(row[11], heading[11], side["supplies"]["inputWatts"]), row


def check_modes(shown, expected):
    period = expected["period"]
    heading, *rows = shown.tables["Modes and their period"]
    wanted = [(mode["name"], side) for mode in period["modes"] for side in mode["sides"]]
    for row, (name, side) in zip(rows, wanted):
        assert row[0] in ("", name) and row[2] == side["process"], row
        for column, field in ((4, "staticWatts"), (5, "watts"), (6, "peakWatts")):
            assert agrees(row[column], heading[column], side[field]), f"{heading[column]} of {row} is {side[field]}"
        assert row[9] == f"{side['highestJunctionTemperature']:.2f}".replace("-", "−"), row
    for row, side in zip(rows[len(wanted):], period["sides"], strict=True):
        assert row[0] == "Period" and agrees(row[5], heading[5], side["watts"]), row
    assert any(name.startswith("Power by group in each mode") for name in shown.charts), shown.charts


def check(zelm, chromium, design):
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        folder = pathlib.Path(folder)
        made = subprocess.run([zelm, "estimate", design, "--json", "--html", folder / "report.html"], check=True,
                              capture_output=True)
        expected = json.loads(made.stdout)
        (folder / "frame.html").write_text(FRAME)
        frame = browse(chromium, folder / "frame.html", folder / "profile")
    complaints = [line for line in frame.stderr.splitlines() if "CONSOLE" in line]
    assert not complaints, f"the console says {complaints}"
    asked = json.loads(html.unescape(re.search(r'<pre id="asked">(.*?)</pre>', frame.stdout, re.S)[1]))
    shown = Page()
    shown.feed(asked["html"])
    check_page(shown, asked)
    rails = check_numbers(shown, asked, expected)
    check_explanations(asked, expected)
    if "supplies" in expected["sides"][0]:
        check_supplies(shown, expected)
    if "period" in expected:
        check_modes(shown, expected)
    print(f"{design}: {rails} rails, {len(expected['groups'])} groups, {len(shown.charts)} charts agree")


if __name__ == "__main__":
    for one in sys.argv[3:]:
        try:
            check(sys.argv[1], sys.argv[2], one)
        except AssertionError as wrong:
            sys.exit(f"{one}: {wrong}")
