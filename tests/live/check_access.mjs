// Sees that nothing in pages hinders people who see little, or use no mouse: the live page and the report of a design, in
// light and dark, on a desk and on a phone, with an explanation open too.
// node check_access.mjs ZELM CHROMIUM DESIGN
import { execFileSync } from 'node:child_process';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';
import { hindrances } from './axe.mjs';
import { Browser } from './browser.mjs';

const [zelm, chromium, design] = process.argv.slice(2);
const place = mkdtempSync(join(tmpdir(), 'zelm-access-'));
const looks = [['light', 1280], ['dark', 1280], ['light', 390], ['dark', 390]];
const found = [];
let judged = 0;

async function judge(browser, words, within) {
  ++judged;
  let lines = await hindrances(browser, within);
  // Pages follow a new width after a moment.
  for (let tries = 0; lines.length && tries < 20; ++tries) {
    await new Promise(done => setTimeout(done, 200));
    lines = await hindrances(browser, within);
  }
  found.push(...lines.map(line => `${words}: ${line}`));
}

async function judgeAll(browser, name, looks, openExplanation) {
  for (const [scheme, width] of looks) {
    await browser.look(width, 900, scheme);
    await judge(browser, `${name}, ${scheme}, ${width} wide`);
    await browser.evaluate(openExplanation);
    await browser.until('document.querySelector("#why[open] summary")');
    await browser.evaluate('document.querySelector("#why summary").click()');
    await browser.until('document.querySelector("#why details[open] summary ~ *")');
    await judge(browser, `${name}, ${scheme}, ${width} wide, explanation`, '#why');
    await browser.evaluate('document.getElementById("why").close()');
  }
}

const browser = new Browser(chromium);
try {
  const page = join(place, 'live.html');
  execFileSync(zelm, ['estimate', design, '--live', page], { stdio: ['ignore', 'ignore', 'pipe'] });
  await browser.open(pathToFileURL(page).href);
  await browser.until('document.body?.dataset.settled');
  await browser.evaluate(`(() => { for (const box of document.querySelectorAll('details.section, [data-group="0"], #results details')) box.open = true; })()`);
  await judgeAll(browser, 'the live page', looks, `document.querySelector('#results [data-why^="static"]').click()`);
  await browser.evaluate(`document.querySelector('[data-key="add"]').click()`);
  await judge(browser, 'the live page, kinds of groups', '#kinds');

  const report = join(place, 'report.html');
  execFileSync(zelm, ['estimate', design, '--html', report], { stdio: ['ignore', 'ignore', 'pipe'] });
  await browser.open(pathToFileURL(report).href);
  await browser.until('document.querySelector("button.why")');
  await judgeAll(browser, 'the report', [looks[0], looks[3]], 'document.querySelector("button.why").click()');

  if (found.length)
    throw new Error(found.join('\n'));
  console.log(`in ${judged} looks at two pages nothing hinders seriously`);
} catch (wrong) {
  console.error(wrong.message);
  process.exitCode = 1;
} finally {
  await browser.close();
  rmSync(place, { recursive: true, force: true });
}
process.exit();
