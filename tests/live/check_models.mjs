// Sees that the live page's models give what the tool prints, byte for byte: for designs as they stand, and for as many
// of each with some values changed at random, the same in every run; estimates, and explanations of some quantities.
// node check_models.mjs ZELM MODULE_FOLDER CHANGED DESIGN...
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, symlinkSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { basename, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { isDeepStrictEqual } from 'node:util';
import { models } from './models.mjs';

const [program, folder, changed, ...designs] = process.argv.slice(2);
const zelm = resolve(program);
const ask = await models(folder);
const place = mkdtempSync(join(tmpdir(), 'zelm-live-'));
// Explanations name data files, by the search list's folder: the models' is data.
symlinkSync(fileURLToPath(new URL('../../data', import.meta.url)), join(place, 'data'));

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

function native(text, name, command = ['estimate', name, '--json']) {
  writeFileSync(join(place, name), text);
  try {
    return { json: execFileSync(zelm, command, { cwd: place, encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'], maxBuffer: 1 << 28, env: { ...process.env, QTA_DATADIR: 'data' } }) };
  } catch (failure) {
    return { error: failure.stderr.trim().split('\n').at(-1).replace(/^zelm: /, '') };
  }
}

function compare(text, name, what) {
  const ours = ask({ do: 'estimate', file: name, text, print: true });
  const isThere = agree(native(text, name), ours, what, text);
  // What the page gets is put together from what has changed and what hasn't.
  if (isThere && !isDeepStrictEqual(ask({ do: 'estimate', file: name, text }).estimate, JSON.parse(ours.json)))
    throw new Error(`${what}: the page gets another estimate than is printed, for ${text.slice(0, 2000)}`);
  return isThere;
}

function agree(theirs, ours, what, text) {
  if (ours.json === theirs.json && (ours.error === undefined) === (theirs.error === undefined) && (!ours.error || ours.error === theirs.error))
    return theirs.json !== undefined;
  const [a, b] = [ours.json ?? ours.error ?? '', theirs.json ?? theirs.error ?? ''];
  let at = 0;
  while (a[at] === b[at])
    ++at;
  const near = all => all.slice(Math.max(0, at - 300), at + 100);
  console.error(`${what}: at ${at} the models say\n${near(a)}\nthe tool\n${near(b)}\nfor ${text.slice(0, 2000)}`);
  process.exit(1);
}

let explanations = 0;

// Formulas pull their operands one by one, so that their order too doesn't depend on the compiler.
function compareExplanation(text, name, quantity) {
  const theirs = native(text, name, ['explain', name, quantity, '--json']);
  agree(theirs, ask({ do: 'explain', file: name, text, quantity, print: true }), `${name}, explain ${quantity}`, text);
  ++explanations;
}

// All that a total comes from, and quantities of each kind; some that there are not.
function compareExplanations(text, name) {
  const { groups, sides } = ask({ do: 'estimate', file: name, text }).estimate;
  const asked = [`total@${sides.at(-1).process}`, 'dynamic', 'static', 'junction', 'rail:VCCINT', 'group:nobody', 'total@BEST'];
  const largest = [...groups].sort((a, b) => b.watts - a.watts)[0];
  if (largest) {
    const input = largest.inputs.find(one => typeof one.value === 'number')?.cell ?? 'NONE';
    asked.push(...[largest, groups.at(-1)].map(group => `group:${group.name}`), `group:${largest.name}.${largest.outputs[0]?.cell ?? input}`, `group:${largest.name}.${input}`);
  }
  for (const quantity of asked)
    compareExplanation(text, name, quantity);
}

// Where the page opens a tree step by step it shows what stands in the whole.
function compareSteps(text, name) {
  const step = more => ask({ do: 'explain', file: name, text, quantity: 'total', ...more }).explanation;
  const whole = step({ depth: 4 });
  const path = [];
  for (let node = whole; node.operands.length; node = node.operands.at(-1)) {
    const alone = step({ path, depth: 1 });
    const told = ({ cell, quantity, group, value }) => JSON.stringify([cell, quantity, group, value]);
    if (told(alone) !== told(node) || alone.formula !== node.formula || alone.operands.map(told).join() !== node.operands.map(told).join())
      throw new Error(`${name}: step ${path} is ${told(alone)}, in the whole ${told(node)}`);
    path.push(node.operands.length - 1);
    if (path.length === 4)
      return;
  }
}

try {
  let estimated = 0, refused = 0;
  for (const file of designs) {
    const name = basename(file), text = readFileSync(file, 'utf8').replace(/"include": \[.*?\],/, ''); // the models have one file
    if (!compare(text, name, name))
      throw new Error(`${name} has no estimate`);
    compareExplanations(text, name);
    compareSteps(text, name);
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
  console.log(`${designs.length} designs and ${estimated} changed ones agree byte for byte, ${refused} are refused alike; so do ${explanations} explanations`);
} finally {
  rmSync(place, { recursive: true });
}
