// Opens live pages in headless Chromium and edits them as people do: what they show is what the tool prints for the
// design that the page saves. The edits are the same in every run.
// node check_page.mjs ZELM CHROMIUM EDITS DESIGN...
import { execFileSync } from 'node:child_process';
import { mkdtempSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { basename, dirname, join, resolve } from 'node:path';
import { pathToFileURL } from 'node:url';
import { isDeepStrictEqual } from 'node:util';
import { Browser } from './browser.mjs';

const [program, chromium, edits, ...designs] = process.argv.slice(2);
const zelm = resolve(program);
const place = mkdtempSync(join(tmpdir(), 'zelm-page-'));

function expect(holds, words) {
  if (!holds)
    throw new Error(words);
}

// Which warnings name a line of the file doesn't matter: the page's text has lines of its own.
const withoutLines = estimate => ({ ...estimate, warnings: estimate.warnings.map(text => text.replace(/^[^:]*:\d+: /, '')) });

function native(text) {
  writeFileSync(join(place, 'edited.json'), text);
  return JSON.parse(execFileSync(zelm, ['estimate', 'edited.json', '--json'], { cwd: place, encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'], maxBuffer: 1 << 28 }));
}

function different(a, b, at = '') {
  if (isDeepStrictEqual(a, b))
    return '';
  for (const key of Object.keys({ ...a, ...b })) {
    if (a && b && typeof a === 'object' && typeof b === 'object' && !isDeepStrictEqual(a[key], b[key]))
      return different(a[key], b[key], `${at}.${key}`);
  }
  return `${at}: ${JSON.stringify(a)} in the page, ${JSON.stringify(b)} by the tool`;
}

async function compare(browser, words) {
  const [text, shown] = await browser.evaluate(`(async () => {
    const { ask, design, result, file } = zelmPage;
    return [(await ask({ do: 'format', file: file(), text: JSON.stringify(design()) })).text, result()];
  })()`);
  const wrong = different(withoutLines(shown), withoutLines(native(text)));
  expect(!wrong, `${words}: ${wrong}`);
}

// An edit of a field that shows, as the keyboard makes it. The milliseconds until the results stand, or nothing for what
// the models refuse, which is undone.
const EDIT = `(async random => {
  const fields = [...document.querySelectorAll('#design input[data-key^="groups["]:not([inputmode]), #design select[data-key^="groups["], #design input[data-key^="environment."]')].filter(f => f.value);
  const field = fields[Math.floor(random * fields.length)], value = Number(field.value);
  const began = performance.now();
  if (field.matches('select')) {
    field.selectedIndex = (field.selectedIndex + 1) % field.options.length;
    field.dispatchEvent(new Event('change', { bubbles: true }));
  } else {
    if (!Number.isFinite(value)) return undefined;
    field.value = String(Number.isInteger(value) ? value + 1 : +(value * 0.9).toPrecision(4));
    field.dispatchEvent(new Event('input', { bubbles: true }));
    field.dispatchEvent(new Event('change', { bubbles: true }));
  }
  while (!document.body.dataset.settled) await new Promise(done => { const c = new MessageChannel(); c.port1.onmessage = done; c.port2.postMessage(0); });
  const took = performance.now() - began;
  if (zelmPage.problem()) { zelmPage.undo(); while (!document.body.dataset.settled) await new Promise(done => setTimeout(done, 1)); return undefined; }
  return took;
})`;

async function check(file) {
  const browser = new Browser(chromium);
  try {
    const page = join(place, 'page.html');
    execFileSync(zelm, ['estimate', file, '--live', page], { stdio: ['ignore', 'ignore', 'pipe'] });
    expect(statSync(page).size < 5.5e6, `the page has ${statSync(page).size} bytes`);
    await browser.open(pathToFileURL(page).href);
    await browser.until('document.body?.dataset.settled');
    const first = await browser.evaluate('performance.getEntriesByName("results")[0].startTime');
    const start = await browser.evaluate('zelmPage.result()');
    const wrong = different(start, JSON.parse(execFileSync(zelm, ['estimate', basename(file), '--json'], { cwd: dirname(file), encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'], maxBuffer: 1 << 28 })));
    expect(!wrong, `as it came: ${wrong}`);
    await checkResets(browser);

    await browser.evaluate(`(() => { for (const box of [...document.querySelectorAll('[data-group]')].slice(0, 12)) box.open = true; })()`);
    await browser.until(`document.querySelectorAll('#design [data-key^="groups["]').length > 20`);
    let seed = 7;
    const random = () => (seed = (Math.imul(seed, 1103515245) + 12345) >>> 0) / 2 ** 32;
    const times = [];
    for (let i = 0; i < Number(edits); ++i) {
      const took = await browser.evaluate(`${EDIT}(${random()})`);
      if (took !== undefined && took !== null)
        times.push(took);
      if (i % 20 === 19)
        await compare(browser, `after ${i + 1} edits`);
    }
    await compare(browser, 'after all edits');
    await checkExplanation(browser);
    expect(times.length > Number(edits) / 3, `of ${edits} edits only ${times.length} were taken`);

    // Back to the same bits, and forth.
    const last = await browser.evaluate('zelmPage.result()');
    const settled = `document.body.dataset.settled`;
    await browser.evaluate(`(() => { for (let i = 0; i < 1000; ++i) zelmPage.undo(); })()`);
    await browser.until(settled);
    const back = different(withoutLines(await browser.evaluate('zelmPage.result()')), withoutLines(start));
    expect(!back, `undone: ${back}`);
    expect(await browser.evaluate('JSON.stringify(zelmPage.design()) === JSON.stringify(zelmPage.original())'), 'undone, but the design is another');
    await browser.evaluate(`(() => { for (let i = 0; i < 1000; ++i) zelmPage.redo(); })()`);
    await browser.until(settled);
    const forth = different(await browser.evaluate('zelmPage.result()'), last);
    expect(!forth, `done again: ${forth}`);

    expect(browser.said.length === 0, `the console says ${browser.said.join('\n')}`);
    expect(browser.fetched.every(url => url === pathToFileURL(page).href), `the page fetches ${browser.fetched}`);
    times.sort((a, b) => a - b);
    console.log(`${basename(file)}: first result ${first.toFixed(0)} ms after it opened, ${times.length} edits, median ${times[times.length >> 1].toFixed(1)} ms, worst ${times.at(-1).toFixed(1)} ms`);
  } finally {
    await browser.close();
  }
}

// Markup in names stays text, a mistake is told beside its field, and ten thousand groups don't choke the page.
async function checkHostile() {
  const markup = '<img src=x onerror="document.title=1">\'"&amp;</script><script>alert(1)</script>';
  const text = JSON.stringify({ name: markup, groups: Array.from({ length: 10000 }, (_, i) => ({ block: 'Signal', name: `${markup} ${i}`, in: markup.replaceAll('/', '|'), inputs: { SIGNAL_COUNT: 1 + i % 7, CLOCK_FREQ: 100 } })) });
  writeFileSync(join(place, 'hostile.json'), text);
  const page = join(place, 'hostile.html');
  execFileSync(zelm, ['estimate', 'hostile.json', '--live', page], { cwd: place, stdio: ['ignore', 'ignore', 'pipe'] });
  const browser = new Browser(chromium);
  try {
    await browser.open(pathToFileURL(page).href, 390, 800);
    await browser.until('document.body?.dataset.settled');
    expect(await browser.evaluate('document.querySelectorAll("img, iframe").length') === 0, 'markup of a name became an element');
    expect(await browser.evaluate('document.getElementById("name").textContent') === markup, 'the name is shown otherwise');
    expect(await browser.evaluate('document.querySelectorAll("[data-group]").length') === 100, 'all groups are listed at once');
    expect(await browser.evaluate('document.documentElement.scrollWidth') <= 390, 'the page is wider than a phone');
    await browser.evaluate(`(() => { document.querySelector('[data-group="3"]').open = true; })()`);
    await browser.until(`document.getElementById('f-groups[3].inputs.CLOCK_FREQ')`);
    const open = `document.querySelector('#why[open] summary')`;
    await browser.evaluate(`document.querySelector('#results [data-why="total"], #results [data-why="dynamic"]').click()`);
    await browser.until(open);
    expect(await browser.evaluate('document.querySelectorAll("#why details").length') <= 100, 'all groups are explained at once');
    await browser.evaluate(`${open}.click()`);
    await browser.until(`document.querySelector('#why details details')`);
    expect(await browser.evaluate('document.querySelectorAll("img, iframe").length') === 0, 'markup of a name became an element of an explanation');
    expect(await browser.evaluate(`${open}.textContent`).then(text => text.includes(markup)), 'the explanation shows the name otherwise');
    expect(await browser.evaluate('document.documentElement.scrollWidth') <= 390, 'the explanation makes the page wider than a phone');
    await browser.evaluate('document.getElementById("why").close()');
    await browser.evaluate(`(() => { const field = document.getElementById('f-groups[3].inputs.CLOCK_FREQ'); field.value = '-5'; field.dispatchEvent(new Event('input')); })()`);
    await browser.until('document.body?.dataset.settled');
    const told = await browser.evaluate(`document.getElementById('e-groups[3].inputs.CLOCK_FREQ').textContent`);
    expect(/-5/.test(told), `beside the field of the mistake stands "${told}", and the page says ${await browser.evaluate('zelmPage.problem()')}`);
    expect(browser.said.length === 0, `the console says ${browser.said.join('\n')}`);
    console.log('markup stays text, mistakes stand beside their fields');
  } finally {
    await browser.close();
  }
}

// A number opens how it comes about, by the keyboard too, and none does that can't be explained.
async function checkExplanation(browser) {
  const unknown = await browser.evaluate(`(async () => {
    const { ask, design, file } = zelmPage, text = JSON.stringify(design()), errors = [];
    const quantities = new Set([...document.querySelectorAll('[data-why]')].map(one => one.dataset.why));
    for (const quantity of quantities)
      errors.push(...[(await ask({ do: 'explain', file: file(), text, quantity, depth: 0 })).error].filter(Boolean));
    return quantities.size < 8 ? ['there are only ' + [...quantities]] : errors;
  })()`);
  expect(unknown.length === 0, `not explained: ${unknown}`);
  const shown = 'document.querySelector(\'#results [data-why^="total"]\')';
  const total = await browser.evaluate(`${shown}.textContent`);
  await browser.evaluate(`${shown}.focus()`);
  await browser.press('Enter');
  await browser.until('document.querySelector("#why[open] summary")');
  const heading = await browser.evaluate('document.getElementById("why-h").textContent');
  expect(heading.startsWith('Total power') && heading.includes(total), `the total of ${total} is explained as ${heading}`);
  await browser.evaluate('document.querySelector("#why summary").focus()');
  for (let depth = 1; depth < 4; ++depth) {
    await browser.press('ArrowRight');
    await browser.until('document.activeElement.parentElement.open && document.activeElement.nextElementSibling');
    const inside = await browser.evaluate('document.activeElement.parentElement.querySelectorAll("p").length');
    expect(inside > 0, `nothing stands below ${await browser.evaluate('document.activeElement.textContent')}`);
    await browser.press('ArrowRight');
  }
  await browser.until('document.querySelectorAll("#why details[open]").length >= 3');
  await browser.press('Escape');
  await browser.until('!document.getElementById("why").open');
  expect(await browser.evaluate(`document.activeElement === ${shown}`), 'the keyboard is not back at the number');
}

// Marks and resets go by what a group was when the design came, not by where it stands or what it is called.
async function checkResets(browser) {
  const wrong = await browser.evaluate(`(async () => {
    const settled = async () => { while (!document.body.dataset.settled) await new Promise(done => setTimeout(done, 1)); };
    const group = name => [...document.querySelectorAll('[data-group]')].find(box => box.querySelector('.n').textContent === name);
    const open = async name => {
      group(name).open = true;
      while (!group(name).querySelector('.field')) await new Promise(done => setTimeout(done, 1));
    };
    const press = async (name, words) => {
      await open(name);
      [...group(name).querySelectorAll('button')].find(button => button.textContent === words).click();
      await settled();
    };
    const field = (name, cell) => [...group(name).querySelectorAll('.field')].find(box => box.dataset.field.endsWith(cell));
    const type = async (name, cell, text) => {
      await open(name);
      const input = field(name, cell).querySelector('input');
      input.value = text;
      input.dispatchEvent(new Event('input', { bubbles: true }));
      input.dispatchEvent(new Event('change', { bubbles: true }));
      await settled();
    };
    const start = JSON.stringify(zelmPage.design());
    const names = () => zelmPage.design().groups.map(one => one.name);
    const number = group => Object.entries(group.inputs).find(([, value]) => typeof value === 'number');
    const edited = zelmPage.design().groups.findLast(number), last = edited.name, first = names()[0];
    const [cell, was] = number(edited);
    await type(last, cell, '7');
    await press(last, 'Up');
    await press(first, 'Copy');
    await press(first, 'Remove');
    await type(last, '.name', 'renamed');
    const reset = () => field('renamed', cell).querySelector('[data-reset]');
    if (reset().hidden) return 'a changed field of a group that moved cannot be reset';
    if (!group('renamed').classList.contains('changed') || !group(first + ' 2').classList.contains('new')) return 'groups are marked ' + [...document.querySelectorAll('[data-group]')].map(box => box.className);
    if ([...document.querySelectorAll('[data-reset]')].filter(one => !one.hidden).length !== 2) return 'these can be reset: ' + [...document.querySelectorAll('[data-reset]')].filter(one => !one.hidden).map(one => one.dataset.reset);
    reset().click();
    await settled();
    const value = zelmPage.design().groups.find(one => one.name === 'renamed').inputs[cell];
    if (value !== was) return 'reset to ' + value + ' instead of ' + was;
    if (!reset().hidden) return 'what has been reset can be reset again';
    field('renamed', '.name').querySelector('[data-reset]').click();
    await settled();
    if (!names().includes(last)) return 'the name was not reset';
    document.querySelector('.removed button').click();
    await settled();
    if (names()[0] !== first || document.querySelector('.removed')) return 'put back: ' + names();
    while (JSON.stringify(zelmPage.design()) !== start) { zelmPage.undo(); await settled(); }
    return '';
  })()`);
  expect(!wrong, wrong);
}

try {
  for (const file of designs) {
    try {
      await check(file);
    } catch (wrong) {
      throw new Error(`${file}: ${wrong.message}`);
    }
  }
  await checkHostile();
} catch (wrong) {
  console.error(wrong.message);
  process.exitCode = 1;
} finally {
  rmSync(place, { recursive: true, force: true });
}
process.exit();
