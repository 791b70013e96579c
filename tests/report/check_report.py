#!/usr/bin/env python3
"""Opens the HTML report of each design in headless Chromium without a network, and compares what it shows with the JSON.

check_report.py ZELM CHROMIUM DESIGN..."""
import html.parser
import json
import pathlib
import subprocess
import sys
import tempfile


class Tables(html.parser.HTMLParser):
    """The cells of all tables as text, by the label of the region around each; and how many charts were drawn."""

    def __init__(self):
        super().__init__()
        self.tables, self.rows, self.cell, self.svgs = {}, None, None, 0

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if tag == "div" and attributes.get("role") == "region":
            self.rows = self.tables.setdefault(attributes["aria-label"], [])
        elif tag == "tr" and self.rows is not None:
            self.rows.append([])
        elif tag in ("td", "th") and self.rows:
            self.cell = ""
        elif tag == "svg":
            self.svgs += 1

    def handle_endtag(self, tag):
        if tag in ("td", "th") and self.cell is not None:
            self.rows[-1].append(self.cell)
            self.cell = None

    def handle_data(self, data):
        if self.cell is not None:
            self.cell += data


def si(value, unit):
    size = abs(value)
    for factor, sign in ((1, ""), (1e-3, "m"), (1e-6, "µ"), (1e-9, "n"), (1e-12, "p")):
        if size >= factor or size == 0:
            break
    scaled = value / factor
    digits = 1 if abs(scaled) >= 99.995 else 2 if abs(scaled) >= 9.9995 else 3
    return f"{scaled:.{digits}f} {sign}{unit}"


def check(zelm, chromium, design):
    expected = json.loads(subprocess.run([zelm, "estimate", design, "--json"], check=True, capture_output=True).stdout)
    with tempfile.TemporaryDirectory() as folder:
        page = pathlib.Path(folder) / "report.html"
        subprocess.run([zelm, "estimate", design, "--html", page], check=True, capture_output=True)
        browser = subprocess.run(
            [chromium, "--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-sync",
             "--disable-background-networking", "--disable-component-update", "--host-resolver-rules=MAP * ~NOTFOUND",
             f"--user-data-dir={folder}/profile", "--enable-logging=stderr", "--virtual-time-budget=3000", "--dump-dom",
             page.as_uri()], capture_output=True, text=True, timeout=120)
    complaints = [line for line in browser.stderr.splitlines() if "CONSOLE" in line]
    assert not complaints, f"{design}: the console says {complaints}"
    shown = Tables()
    shown.feed(browser.stdout)
    assert shown.svgs >= 2, f"{design}: {shown.svgs} charts were drawn"

    rails = {row[0].removesuffix(" *"): row for row in shown.tables["Rails"][1:]}
    for rail in expected["sides"][0]["rails"]:
        if rail["totalAmperes"]:
            row = rails[rail["rail"]]
            wanted = [si(rail["staticAmperes"], "A"), si(rail["dynamicAmperes"], "A"), si(rail["totalAmperes"], "A"),
                      si(rail["watts"], "W")]
            assert row[2:6] == wanted, f"{design}: {rail['rail']} shows {row}, the JSON has {wanted}"
    total = shown.tables["Power by block"][-1]
    assert total[:2] == ["Total", si(expected["totalWatts"], "W")], f"{design}: total {total}"
    for group in expected["groups"]:
        inputs = shown.tables[group["name"] + " inputs"][1:]
        assert [row[0] for row in inputs] == [i["cell"] for i in group["inputs"]], f"{design}: inputs of {group['name']}"
    for budget in expected["budgets"]:
        row = next(row for row in shown.tables["Budgets"] if row[0] == budget["name"])
        assert ("broken" in row[3]) == budget["broken"], f"{design}: budget {row}"
    assert len(shown.tables["Data files"]) - 1 == len(expected["dataFiles"])
    print(f"{design}: {len(rails)} rails, {len(expected['groups'])} groups, {shown.svgs} charts agree")


if __name__ == "__main__":
    for one in sys.argv[3:]:
        check(sys.argv[1], sys.argv[2], one)
