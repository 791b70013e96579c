import { byId } from './dom.js';
import { Editor } from './editor.js';
import { Explainer } from './explain.js';
import { History, same, withValue } from './history.js';
import { degrees } from './numbers.js';
import { glance, markSoon, showResults } from './results.js';

const given = JSON.parse(byId('given').textContent || '{}');

// ---- The models ----

const worker = new Worker(URL.createObjectURL(new Blob([byId('model').textContent || ''], { type: 'text/javascript' })));
worker.postMessage({ module: byId('wasm').textContent });
byId('wasm').remove();
/** @type {Map<number, (answer: any) => void>} */
const waiting = new Map();
let asked = 0;
worker.onmessage = (/** @type {MessageEvent} */ { data }) => {
  const done = waiting.get(data.id);
  waiting.delete(data.id);
  done?.(data.failed ? { error: `The models failed: ${data.failed}` } : { ...JSON.parse(data.answer), took: data.took, raw: data.answer });
};

/** @param {object} request @returns {Promise<any>} */
function ask(request) {
  return new Promise(resolve => {
    waiting.set(++asked, resolve);
    worker.postMessage({ id: asked, request: JSON.stringify(request) });
  });
}

// ---- The design and its estimate ----

let file = String(given.file || 'design.json');
let history = new History({ groups: [] });
/** @type {any} */
let result;
/** The design of the result. */
let estimated = { file, text: '' };
/** @type {any} of the design as it came */
let first;
let problem = '';
let busy = false;
let stale = false;
/** @type {Editor | undefined} */
let editor;

function show() {
  showResults(byId('results'), result, first || result, problem);
  byId('glance').textContent = glance(result, problem);
  byId('name').textContent = String(history.design?.name || 'Power estimate');
  document.title = `${history.design?.name || file}: live power estimate`;
  const lead = [file, ...(result?.part ? [result.part] : []), ...(result?.ambientTemperature !== undefined ? [`ambient ${degrees(result.ambientTemperature)}`] : [])];
  byId('lead').textContent = lead.join(' · ');
  const changed = !same(history.design, history.original);
  for (const [id, on] of /** @type {[string, boolean][]} */ ([['undo', history.before.length > 0], ['redo', history.after.length > 0], ['reset', changed]]))
    /** @type {HTMLButtonElement} */ (byId(id)).disabled = !on;
  editor?.follow(problem);
}

// One estimate at a time; what is typed meanwhile waits, and only the last of it is asked for.
async function estimate() {
  if (busy) {
    stale = true;
    return;
  }
  busy = true;
  do {
    stale = false;
    const asking = history;
    const design = { file, text: JSON.stringify(history.design) };
    const answer = await ask({ do: 'estimate', ...design });
    if (asking !== history)
      continue; // another design has been opened
    problem = answer.error || '';
    if (answer.estimate) {
      result = answer.estimate;
      estimated = design;
    }
  } while (stale);
  busy = false;
  if (!first)
    first = result;
  show();
  document.body.dataset.settled = String(asked);
}

/** @param {any} design @param {string} step */
function change(design, step) {
  if (same(design, history.design))
    return;
  delete document.body.dataset.settled;
  history.change(design, step);
  estimate();
}

const context = {
  catalogue: /** @type {any} */ (undefined),
  design: () => history.design,
  /** @param {import('./history.js').Path} path */
  originally: path => history.originally(path),
  /** @param {any} group */
  originalOf: group => history.originalOf(group),
  removed: () => history.removed(),
  result: () => result,
  /** @param {import('./history.js').Path} path @param {any} value */
  set: (path, value) => change(withValue(history.design, path, value), path.join('.')),
  /** @param {import('./history.js').Path} path @param {any} value */
  put: (path, value) => {
    change(withValue(history.design, path, value), '');
    editor?.render();
  },
  settle: () => history.settle(),
};

/** @param {string} name @param {string} text */
async function open(name, text) {
  const [reading, estimating] = [ask({ do: 'read', file: name, text }), ask({ do: 'estimate', file: name, text })];
  const knowing = context.catalogue || ask({ do: 'catalogue' }).then(answer => answer.catalogue); // while results are drawn
  const read = await reading;
  if (read.error) {
    problem = read.error;
    show();
    return;
  }
  file = name;
  history = new History(read.design);
  result = first = undefined;
  const answer = await estimating;
  problem = answer.error || '';
  result = first = answer.estimate;
  estimated = { file, text };
  show();
  performance.mark('results');
  context.catalogue = await knowing;
  editor = new Editor(byId('design'), context);
  editor.render();
  show();
  document.body.dataset.settled = String(asked);
}

// ---- Around it ----

/** @param {boolean} went */
function wentTo(went) {
  if (!went)
    return;
  delete document.body.dataset.settled;
  editor?.render();
  estimate();
}
const undo = () => wentTo(history.undo());
const redo = () => wentTo(history.redo());

async function save() {
  const answer = await ask({ do: 'format', file, text: JSON.stringify(history.design) });
  const link = document.createElement('a');
  link.href = URL.createObjectURL(new Blob([answer.text ?? JSON.stringify(history.design, null, 2)], { type: 'application/json' }));
  link.download = file.replace(/^.*[\\/]/, '');
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 1000);
}

const chooser = /** @type {HTMLInputElement} */ (byId('file'));
chooser.addEventListener('change', async () => {
  const chosen = chooser.files?.[0];
  chooser.value = '';
  if (chosen)
    open(chosen.name, await chosen.text());
});
byId('undo').addEventListener('click', undo);
byId('redo').addEventListener('click', redo);
byId('reset').addEventListener('click', () => { change(history.original, ''); editor?.render(); });
byId('open').addEventListener('click', () => chooser.click());
byId('save').addEventListener('click', save);
byId('print').addEventListener('click', () => print());
addEventListener('keydown', event => {
  if (document.querySelector('dialog[open]'))
    return;
  const name = event.key.toLowerCase();
  const inField = event.target instanceof HTMLElement && event.target.matches('input, textarea, select');
  const act = event.ctrlKey || event.metaKey ? { z: event.shiftKey ? redo : undo, y: redo, s: save, o: () => chooser.click() }[name]
    : name === '/' && !inField ? () => document.getElementById('search')?.focus() : undefined;
  if (act) {
    event.preventDefault();
    act();
  }
});
addEventListener('resize', () => markSoon(byId('results')));
const explainer = new Explainer(ask);
document.addEventListener('click', event => {
  const made = event.target instanceof Element ? event.target.closest('[data-why]') : null;
  if (!(made instanceof HTMLElement))
    return;
  event.preventDefault(); // in a group's line it doesn't open the group
  explainer.open(String(made.dataset.why), estimated);
});
byId('foot').textContent = 'The models and their data stand in this page: it loads nothing, and nothing leaves it.';

// For those who drive the page by a program.
Object.assign(globalThis, { zelmPage: { ask, open, context, undo, redo, design: () => history.design, original: () => history.original, result: () => result, problem: () => problem, file: () => file } });

open(file, String(given.text || '{"groups": []}'));
