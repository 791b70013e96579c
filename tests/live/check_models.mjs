// Sees that the live page's models give what the tool prints, byte for byte: for designs as they stand, and for as many
// of each with some values changed at random, the same in every run.
// node check_models.mjs ZELM MODULE_FOLDER CHANGED DESIGN...
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { basename, join, resolve } from 'node:path';
import { models } from './models.mjs';

const [program, folder, changed, ...designs] = process.argv.slice(2);
const zelm = resolve(program);
const ask = await models(folder);
const place = mkdtempSync(join(tmpdir(), 'zelm-live-'));

let seed = 20260101;
const random = () => (seed = (Math.imul(seed, 1103515245) + 12345) >>> 0) / 2 ** 32;
const pick = list => list[Math.floor(random() * list.length)];

const catalogue = ask({ do: 'catalogue' }).catalogue;
const inputs = new Map(catalogue.kinds.map(kind => [kind.block, new Map(kind.inputs.map(input => [input.cell, input]))]));

// Numbers of the environment, rails and groups, words of groups, and groups that come and go.
function change(design) {
  const what = random();
  const groups = design.groups;
  if (!groups.length) {
    groups.push({ block: pick([...inputs.keys()]), name: 'one', inputs: {} });
  } else if (what < 0.08 && design.environment?.ambientTemperature !== undefined) {
    design.environment.ambientTemperature = Math.round(random() * 140) - 40;
  } else if (what < 0.14) {
    const group = structuredClone(pick(groups));
    groups.splice(Math.floor(random() * groups.length), 0, { ...group, name: `${group.name} again ${groups.length}` });
  } else if (what < 0.2 && groups.length > 2) {
    groups.splice(Math.floor(random() * groups.length), 1);
  } else {
    const group = pick(groups);
    const cells = Object.keys(group.inputs || {});
    if (!cells.length) {
      group.count = 1 + Math.floor(random() * 9);
      return;
    }
    const cell = pick(cells), input = inputs.get(group.block)?.get(cell), value = group.inputs[cell];
    if (input?.words)
      group.inputs[cell] = pick(input.words);
    else if (typeof value === 'number')
      group.inputs[cell] = Number.isInteger(value) ? Math.round(value * (0.3 + random())) : Math.fround(value * (0.3 + random()));
  }
}

function native(text, name) {
  const file = join(place, name);
  writeFileSync(file, text);
  try {
    return { json: execFileSync(zelm, ['estimate', name, '--json'], { cwd: place, encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'], maxBuffer: 1 << 28 }) };
  } catch (failure) {
    return { error: failure.stderr.trim().split('\n').at(-1).replace(/^zelm: /, '') };
  }
}

function compare(text, name, what) {
  const theirs = native(text, name);
  const ours = ask({ do: 'estimate', file: name, text, print: true });
  if (ours.json === theirs.json && (ours.error === undefined) === (theirs.error === undefined) && (!ours.error || ours.error === theirs.error))
    return theirs.json !== undefined;
  const [a, b] = [ours.json ?? ours.error ?? '', theirs.json ?? theirs.error ?? ''].map(t => t.split('\n'));
  const line = a.findIndex((one, i) => one !== b[i]);
  console.error(`${what}: line ${line + 1} of the models is\n${a[line]}\nof the tool\n${b[line]}\nfor ${text.slice(0, 2000)}`);
  process.exit(1);
}

try {
  let estimated = 0, refused = 0;
  for (const file of designs) {
    const name = basename(file), text = readFileSync(file, 'utf8');
    if (!compare(text, name, name))
      throw new Error(`${name} has no estimate`);
    const read = ask({ do: 'read', file: name, text }).design;
    let design = structuredClone(read);
    for (let i = 0; i < Number(changed); ++i) {
      const before = structuredClone(design);
      change(design);
      // The models go on from the design before, the tool begins anew.
      if (compare(JSON.stringify(design), name, `${name}, change ${i + 1}`))
        ++estimated;
      else {
        ++refused;
        design = before;
      }
    }
  }
  if (estimated < refused)
    throw new Error(`only ${estimated} changed designs have an estimate, ${refused} don't`);
  console.log(`${designs.length} designs and ${estimated} changed ones agree byte for byte, ${refused} are refused alike`);
} finally {
  rmSync(place, { recursive: true });
}
