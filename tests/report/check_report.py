#!/usr/bin/env python3
"""Opens the HTML report of each design in headless Chromium without a network, and compares what it shows, with and
without scripts, with the JSON.

check_report.py ZELM CHROMIUM DESIGN..."""
import gzip
import hashlib
import html.parser
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

# The reports one by one in a frame as wide as a small phone, and what can be asked only of a page that is laid out.
FRAME = r"""<!doctype html><title>frame</title><pre id="asked"></pre><script>
'use strict';
let frame, page, view, found;
const pause = () => new Promise(done => setTimeout(done, 50));
const all = (selector, from = page) => [...from.querySelectorAll(selector)];
const isShown = node => node.getClientRects().length > 0;

// Every number that can be asked opens its explanation: a button, so by keyboard too.
async function explained() {
  const dialog = page.getElementById('why'), asked = {}, first = page.querySelector('button.why');
  if (!first) return asked;
  first.click(); // which unpacks them
  for (let i = 0; i < 100 && !dialog.open; ++i) await pause();
  dialog.close();
  for (const button of all('button.why')) {
    if (button.tabIndex !== 0) throw new Error('the keyboard does not reach ' + button.textContent);
    button.click();
    if (!dialog.open) throw new Error('nothing opens for ' + button.textContent);
    const name = page.getElementById('why-h').textContent;
    (asked[name.slice(0, name.lastIndexOf(' = '))] ||= []).push([button.textContent, page.getElementById('why-tree').textContent.slice(0, 4000)]);
    dialog.close();
  }
  return asked;
}

// Labels of one drawing that lie on each other.
function overlaps() {
  const bad = [];
  for (const svg of all('svg').filter(isShown)) {
    const labels = all('text', svg).filter(text => text.textContent.trim()).map(text => ({ text: text.textContent, box: text.getBoundingClientRect() })).filter(({ box }) => box.width > 1 && box.height > 1);
    labels.forEach((a, i) => {
      for (const b of labels.slice(i + 1)) {
        if (Math.min(a.box.right, b.box.right) - Math.max(a.box.left, b.box.left) > 1 && Math.min(a.box.bottom, b.box.bottom) - Math.max(a.box.top, b.box.top) > 2)
          bad.push(`${a.text} and ${b.text}`);
      }
    });
  }
  return bad;
}

// What a table's first column does when the rest scrolls.
function slipped() {
  const bad = [];
  found.scrolling = 0;
  for (const box of all('.scroll').filter(box => isShown(box) && box.querySelector('table') && box.scrollWidth > box.clientWidth + 1)) {
    box.scrollLeft = 150;
    for (const row of all('tr', box)) {
      if (Math.abs(row.cells[0].getBoundingClientRect().left - box.getBoundingClientRect().left) > 1) bad.push(row.textContent);
    }
    if (box.scrollLeft) ++found.scrolling;
    box.scrollLeft = 0;
  }
  return bad;
}

// What the arrow keys show of each picture, what a finger shows, and what a pointer shows of a chart.
async function tips() {
  const tip = page.getElementById('tip'), said = [];
  for (const picture of all('.chart, svg[role=img]')) {
    if (picture.tabIndex !== 0) throw new Error('the keyboard does not reach ' + picture.getAttribute('aria-label'));
    picture.focus();
    picture.dispatchEvent(new view.KeyboardEvent('keydown', { key: 'ArrowRight', bubbles: true, cancelable: true }));
    if (tip.hidden || page.getElementById('told').textContent !== tip.textContent) throw new Error('no value of ' + picture.getAttribute('aria-label'));
    said.push(tip.textContent);
    picture.dispatchEvent(new view.KeyboardEvent('keydown', { key: 'Escape', bubbles: true }));
    if (!tip.hidden) throw new Error('Escape leaves ' + tip.textContent);
    const part = picture.querySelector('[data-tip]');
    if (part) {
      part.dispatchEvent(new view.PointerEvent('pointerdown', { pointerType: 'touch', bubbles: true }));
      said.push(tip.hidden ? '' : tip.textContent);
    }
    picture.blur();
    if (picture.matches('.chart')) {
      view.echarts.getInstanceByDom(picture).dispatchAction({ type: 'showTip', seriesIndex: 0, dataIndex: 1 });
      await pause();
      said.push(picture.querySelector(':scope > div:last-child').textContent);
    }
  }
  return said;
}

const rowsOf = table => [...table.tBodies[0].rows].filter(row => !row.hidden).map(row => row.cells[0].textContent);
function sorted() {
  const table = page.querySelector('#groups table.sortable');
  if (!table) return null;
  const heads = all('thead th', table), ways = {};
  for (const word of ['Group', 'Kind', 'In', 'Power', 'Share']) {
    const head = heads.find(one => one.textContent.startsWith(word));
    if (!head) continue;
    ways[word] = [1, 2, 3].map(() => { head.querySelector('button').click(); return [head.getAttribute('aria-sort'), heads.filter(one => one.hasAttribute('aria-sort')).length, rowsOf(table)]; });
  }
  return ways;
}
async function filtered() {
  const section = page.getElementById('groups');
  if (!section) return null;
  const table = section.querySelector('table'), form = section.querySelector('form'), ways = [];
  const controls = all('input, select', form);
  if (controls.some(one => !one.labels.length || !isShown(one))) throw new Error('a field has no name');
  for (const control of controls) {
    const word = control.labels[0].firstChild.textContent;
    const tried = control.tagName === 'SELECT' ? control.options[control.options.length - 1].value : word === 'Find' ? rowsOf(table)[0].toUpperCase() : '0.01';
    control.value = tried;
    control.dispatchEvent(new view.Event('input', { bubbles: true }));
    ways.push([word, tried, rowsOf(table), all('#group-boxes > details').filter(isShown).map(box => box.querySelector('.group').firstChild.textContent), section.querySelector('[role=status]').textContent]);
    form.querySelector('[type=reset]').click();
    await pause();
  }
  ways.push(['Clear', '', rowsOf(table), [], section.querySelector('[role=status]').textContent]);
  const link = table.querySelector('a');
  link.click();
  if (!page.querySelector(link.getAttribute('href')).open) throw new Error('a group’s link opens nothing');
  page.querySelector(link.getAttribute('href')).open = false;
  return ways;
}

// As on paper: what the style says of print holds for all, on its width.
function printed() {
  frame.style.width = '688px';
  for (const sheet of page.styleSheets) {
    for (const rule of sheet.cssRules) {
      if (rule.media && rule.media.mediaText === 'print') rule.media.mediaText = 'all';
    }
  }
  view.dispatchEvent(new view.Event('beforeprint'));
  found.overlapsInPrint = overlaps();
  found.detailsInSummary = all('.detail').filter(isShown).length;
  found.summary = all('section').filter(isShown).map(section => section.id);
  view.dispatchEvent(new view.Event('afterprint'));
  page.getElementById('print-all').click();
  view.dispatchEvent(new view.Event('beforeprint'));
  found.hiddenInAll = all('section, .detail, main table').filter(node => !isShown(node)).map(node => node.outerHTML.slice(0, 200));
  found.overlapsInAll = overlaps();
  view.dispatchEvent(new view.Event('afterprint'));
}

// What hinders people seriously, or worse, as axe-core says.
async function hindrances() {
  const script = page.createElement('script');
  script.textContent = AXE;
  page.head.append(script);
  const { violations } = await view.axe.run(page, { resultTypes: ['violations'], preload: false });
  script.remove();
  return violations.filter(one => ['serious', 'critical'].includes(one.impact)).map(one => `${one.id}: ${one.help}: ${one.nodes.slice(0, 3).map(node => node.html.slice(0, 200)).join('; ')}`);
}

async function look(name) {
  frame = document.createElement('iframe');
  frame.style = 'width:390px;height:800px;border:0';
  frame.src = name;
  found = {};
  await new Promise(done => { frame.onload = done; document.body.append(frame); });
  await pause();
  page = frame.contentDocument;
  view = frame.contentWindow;
  try {
    found.html = page.body.outerHTML.replace(/<script[^]*?<\/script>/g, '');
    found.text = page.body.innerText;
    for (const box of all('main details')) box.open = true;
    found.pageWidth = page.documentElement.scrollWidth;
    found.slipped = slipped();
    for (const box of all('main details')) box.open = false;
    // Large reports have more of the same.
    found.hindrances = all('#group-boxes > details').length < 5 ? await hindrances() : [];
    found.explained = await explained();
    found.overlaps = overlaps();
    found.tips = await tips();
    found.sorted = sorted();
    found.filtered = await filtered();
    found.active = all('img, iframe, object, embed, main script, main style').length;
    printed();
    found.fetched = view.performance.getEntriesByType('resource').map(entry => entry.name).filter(name => !name.startsWith('data:'));
  } catch (wrong) { found.wrong = String(wrong.stack || wrong); }
  frame.remove();
  return found;
}
onload = async () => {
  const asked = [];
  for (const name of REPORTS) asked.push(await look(name));
  document.getElementById('asked').textContent = JSON.stringify(asked);
};
</script>"""
DAY = 366 * 86400  # the second of January of 1971
PREFIXES = {"": 1.0, "m": 1e-3, "µ": 1e-6, "n": 1e-9, "p": 1e-12}


class Page(html.parser.HTMLParser):
    """Tables by caption, headings, the names of charts, and the groups' power by name."""

    def __init__(self):
        super().__init__()
        self.tables, self.uncaptioned, self.headings, self.charts, self.groups = {}, 0, [], [], {}
        self.svgs, self.answers, self.links, self.ids = 0, [], [], set()
        self.rows, self.captioned, self.into, self.text, self.group = None, False, None, "", []
        self.words, self.skipped = "", False

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        self.skipped = tag in ("script", "style", "noscript")
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
        self.skipped = False
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
        if not self.skipped:
            self.words += data


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


OFFLINE = ["--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-sync",
           "--disable-background-networking", "--disable-component-update", "--host-resolver-rules=MAP * ~NOTFOUND"]
AXE = pathlib.Path(__file__).parent.parent / "live/vendor/axe.min.js.gz"
LARGE = "vision.json"  # whose summary is printed


def browse(chromium, page, profile):
    return subprocess.run(
        [chromium, *OFFLINE, "--allow-file-access-from-files", f"--user-data-dir={profile}", "--enable-logging=stderr",
         "--virtual-time-budget=60000", "--dump-dom", page.as_uri()],
        capture_output=True, text=True, timeout=300)


def check_page(shown, asked):
    assert "wrong" not in asked, asked["wrong"]
    assert shown.headings.count(1) == 1, f"headings {shown.headings}"
    assert shown.headings[0] == 1 and all(b - a <= 1 for a, b in zip(shown.headings, shown.headings[1:])), \
        f"headings skip a level: {shown.headings}"
    assert not shown.uncaptioned, f"{shown.uncaptioned} tables have no caption"
    assert all(len(name) > 20 for name in shown.charts), f"charts without a name: {shown.charts}"
    assert shown.svgs >= len(shown.charts), f"{shown.svgs} of {len(shown.charts)} charts were drawn"
    assert all(link[1:] in shown.ids for link in shown.links), f"links that lead nowhere: {shown.links}"
    assert asked["pageWidth"] <= 390, f"the page is {asked['pageWidth']} pixels wide on a screen of 390"
    assert not asked["hindrances"], f"what hinders people: {asked['hindrances']}"
    assert asked["fetched"] == [], f"the page fetches {asked['fetched']}"
    assert not asked["active"], f"{asked['active']} elements that a report has none of"
    for place in ("overlaps", "overlapsInPrint", "overlapsInAll"):
        assert not asked[place], f"labels lie on each other ({place}): {asked[place]}"
    assert not asked["slipped"], f"first columns that scroll away: {asked['slipped']}"
    bare = [tip for tip in asked["tips"] if not re.search(r"\d (W|mW|µW|nW|pW|°C)", tip)]
    assert not bare and len(asked["tips"]) >= 2 * len(shown.charts), f"values without a unit: {bare} of {asked['tips']}"


def check_groups(asked, expected):
    """Sorting and filtering leave what the estimate says they should."""
    groups = expected["groups"]
    names = [group["name"] for group in groups]
    if not groups:
        assert asked["sorted"] is None and asked["filtered"] is None
        return
    for word, ((first, _, up), (second, count, down), (third, none, back)) in asked["sorted"].items():
        assert {first, second} == {"ascending", "descending"} and third is None and count == 1 and not none, word
        assert sorted(up) == sorted(down) == sorted(names) and back == names, f"{word}: {up}"
    watts = {group["name"]: group["watts"] for group in groups if not group["onlyCarries"]}
    for word in ("Power", "Share"):
        way, _, order = asked["sorted"][word][0]
        falling = [watts[name] for name in order if name in watts]
        assert way == "descending" and falling == sorted(falling, reverse=True), f"{word}: {falling}"
    title = {group["name"]: group["title"] for group in groups}
    kinds = [title[name] for name in asked["sorted"]["Kind"][0][2]]
    assert len([1 for a, b in zip(kinds, kinds[1:]) if a != b]) == len(set(kinds)) - 1, f"kinds stand apart: {kinds}"
    for word, tried, kept, boxes, said in asked["filtered"]:
        holds = {"Find": lambda g: tried.lower() in f"{g['name']} {g['title']} {g['block']} {g.get('in', '')}".lower(),
                 "Kind": lambda g: g["title"] == tried, "In": lambda g: (g.get("in", "") + "/").startswith(tried + "/"),
                 "At least, W": lambda g: g["watts"] >= float(tried), "Clear": lambda g: True}[word]
        wanted = [group for group in groups if holds(group)]
        assert kept == [group["name"] for group in wanted], f"{word} {tried}: {kept}"
        assert word == "Clear" or boxes == kept, f"{word} {tried}: {boxes}"
        assert said == f"{len(wanted)} of {len(groups)} groups, {si(sum(g['watts'] for g in wanted), 'W')}", said


def check_print(asked):
    assert not asked["detailsInSummary"], f"{asked['detailsInSummary']} details in the printed summary"
    assert {"totals", "blocks", "provenance"} <= set(asked["summary"]) and "groups" not in asked["summary"], asked["summary"]
    assert not asked["hiddenInAll"], f"not printed though all is asked for: {asked['hiddenInAll']}"


def check_provenance(shown, design, expected):
    made = {row[0]: row[1:] for row in shown.tables["What the report was made from"][1:]}
    files = {"Design": pathlib.Path(design)}
    for name in re.findall(r'"include": \["(.*?)"\]', files["Design"].read_text()):
        files["Included"] = files["Design"].parent / name
    for what, file in files.items():
        name = str(file.relative_to(files["Design"].parent))
        assert made[what] == [name, hashlib.sha256(file.read_bytes()).hexdigest()], made
    assert ("Included" in made) == ("Included" in files), made
    assert made["Tool"][0] == f"zelm {expected['version']}" and made["Date"][0] == "1971-01-02", made


def check_numbers(shown, text, expected):
    for side, answer in zip(expected["sides"], shown.answers, strict=True):
        if side.get("thermal", {"converged": True})["converged"]:
            assert si(side["totalWatts"], "W") in answer, f"{answer} instead of {side['totalWatts']} W"
            assert not side["process"] or f"{side['junctionTemperature']:.2f} °C".replace("-", "−") in answer, answer
        else:
            assert side["totalWatts"] is None and "thermal runaway" in answer and side["thermal"]["words"] in text, answer
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
        assert [(row[0], row[3], row[4]) for row in inputs[1:]] == [(i["cell"], i["unit"], i["origin"]) for i in group["inputs"]], name
        assert all(row[1] for row in inputs[1:]), f"{name}: a cell without its meaning: {inputs}"
        if group["outputs"]:
            table = shown.tables[f"{name}: outputs"]
            for row, output in zip(table[1:], group["outputs"], strict=True):
                assert [row[0], row[2]] == [output["cell"], output["rail"]] and row[1], f"{name}: {row}"
                assert agrees(row[3], table[0][3], output["watts"]) and agrees(row[4], table[0][4], output["amperes"]), row
    files = {row[0]: row[1] for row in shown.tables["Data files"][1:]}
    assert files == {file["name"]: file["sha256"] for file in expected["dataFiles"]}
    for warning in expected["warnings"]:
        assert warning.rpartition(": ")[2] in text, f"no word of: {warning}"
    assert f"zelm {expected['version']}" in text
    return len(rows)


def check_explanations(asked, tables, expected):
    """Every number of totals, rails and groups has its explanation."""
    told = asked["explained"]
    unit = next((name for name in tables.get("Groups and their dynamic power", [[]])[0] if name.startswith("Power")), "")
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
        assert "group:" + group["name"] in told, f"{group['name']} isn't explained"
        (shown, tree), *_ = told["group:" + group["name"]]
        assert agrees(shown, unit, group["watts"]), f"{group['name']}: {shown}"
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


def check_start_up(shown, expected):
    for side in expected["sides"]:
        rows = shown.tables[f"Junction from ambient, process {side['process']}"]
        assert [row[2] for row in rows[1:]] == [f"{one['highestJunctionTemperature']:.2f}" for one in side["startUp"]], rows


def pages(chromium, report, folder):
    printed = folder / "report.pdf"
    subprocess.run([chromium, *OFFLINE, f"--user-data-dir={folder / 'profile'}", f"--print-to-pdf={printed}",
                    report.as_uri()], check=True, capture_output=True, timeout=120)
    return len(re.findall(rb"/Type\s*/Page\b", printed.read_bytes()))


def check(design, source, asked, expected):
    # Without scripts: the file as it stands.
    plain, shown = Page(), Page()
    plain.feed(source)
    assert "wrong" not in asked, asked["wrong"]
    shown.feed(asked["html"])
    check_page(shown, asked)
    for page, text in ((plain, plain.words), (shown, asked["text"])):
        rails = check_numbers(page, text, expected)
        check_provenance(page, design, expected)
        if "supplies" in expected["sides"][0]:
            check_supplies(page, expected)
        if "period" in expected:
            check_modes(page, expected)
        if "startUp" in expected["sides"][0]:
            check_start_up(page, expected)
    if "period" in expected:
        assert any(name.startswith("Power by group in each mode") for name in shown.charts), shown.charts
    check_groups(asked, expected)
    check_print(asked)
    check_explanations(asked, shown.tables, expected)
    print(f"{design}: {rails} rails, {len(expected['groups'])} groups, {len(shown.charts)} charts agree, "
          f"{asked['scrolling']} tables scroll, {len(source) / 1e6:.2f} MB")


def check_all(zelm, chromium, designs):
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        folder = pathlib.Path(folder)
        expected, sources = [], []
        for i, design in enumerate(designs):
            more = ["--start-up"] if '"thermal"' in pathlib.Path(design).read_text() else []
            made = subprocess.run([zelm, "estimate", design, *more, "--json", "--html", folder / f"{i}.html"],
                                  check=True, capture_output=True, env={**os.environ, "SOURCE_DATE_EPOCH": str(DAY)})
            expected.append(json.loads(made.stdout))
            sources.append((folder / f"{i}.html").read_text())
            if pathlib.Path(design).name == LARGE:
                count = pages(chromium, folder / f"{i}.html", folder)
                assert count in (1, 2), f"the summary of {design} takes {count} pages"
        reports = json.dumps([f"{i}.html" for i in range(len(designs))])
        axe = json.dumps(gzip.decompress(AXE.read_bytes()).decode()).replace("<", "\\u003c")
        (folder / "frame.html").write_text(FRAME.replace("REPORTS", reports).replace("AXE", axe))
        frame = browse(chromium, folder / "frame.html", folder / "profile")
    complaints = [line for line in frame.stderr.splitlines() if "CONSOLE" in line]
    assert not complaints, f"the console says {complaints}"
    asked = json.loads(html.unescape(re.search(r'<pre id="asked">(.*?)</pre>', frame.stdout, re.S)[1]))
    for design, source, one, estimate in zip(designs, sources, asked, expected, strict=True):
        try:
            check(design, source, one, estimate)
        except AssertionError as wrong:
            sys.exit(f"{design}: {wrong}")


if __name__ == "__main__":
    check_all(sys.argv[1], sys.argv[2], sys.argv[3:])
