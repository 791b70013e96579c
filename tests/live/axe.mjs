// What axe-core finds in a page that a browser shows.
import { readFileSync } from 'node:fs';
import { gunzipSync } from 'node:zlib';

const axe = gunzipSync(readFileSync(new URL('vendor/axe.min.js.gz', import.meta.url))).toString();

/** What hinders people seriously, or worse, a line each; in all of the page, or within what a selector names. */
export async function hindrances(browser, within = 'html') {
  if (!await browser.evaluate('Boolean(globalThis.axe)'))
    await browser.evaluate(`${axe};0`);
  return browser.evaluate(`axe.run(${JSON.stringify(within)}, { resultTypes: ['violations'], preload: false }).then(({ violations }) => violations
    .filter(one => one.impact === 'serious' || one.impact === 'critical')
    .map(one => one.impact + ', ' + one.id + ': ' + one.help + ': ' + one.nodes.slice(0, 4).map(node => node.html.slice(0, 200) + ' ' + (node.any[0]?.message ?? '')).join('; ')))`);
}
