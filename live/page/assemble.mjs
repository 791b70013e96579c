// Puts the page together, all but for the design: assemble.mjs PAGE_FOLDER BUNDLE MODULE_FOLDER OUT
import { readFileSync, writeFileSync } from 'node:fs';
import { gzipSync } from 'node:zlib';

const [folder, bundle, module, out] = process.argv.slice(2);
const text = file => readFileSync(file, 'utf8').trim();
const parts = {
  STYLE: text(`${folder}/page.css`),
  MODEL: `${text(`${module}/zelm-live.js`)}\n${text(`${folder}/worker.js`)}`,
  WASM: gzipSync(readFileSync(`${module}/zelm-live.wasm`), { level: 9 }).toString('base64'),
  PAGE: text(bundle),
  // For the tool, which puts no design in that it reads other data for.
  HASHES: JSON.stringify(text(`${module}/DataHashes.inc`).match(/[0-9a-f]{64}/g)),
};
let page = `${text(`${folder}/page.html`)}\n`;
for (const [name, part] of Object.entries(parts)) {
  if (/<\/(script|style)|<!--/i.test(part))
    throw new Error(`${name} holds an end of its element`);
  page = page.replace(`/*${name}*/`, () => part);
}
writeFileSync(out, page);
