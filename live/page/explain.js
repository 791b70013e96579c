import { button, byId, element } from './dom.js';
import { degrees, minus, percent, si } from './numbers.js';

/** @typedef {any} Told a node of what `zelm explain --json` prints */
/** @typedef {number[]} Way the places of operands below the quantity that was asked for */

const kAtOnce = 100; // operands
const kOrigins = /** @type {Record<string, string>} */ ({ design: 'as the design says', rails: 'the design’s rail', device: 'the device’s', carried: 'carried', default: 'by default' });

/** @param {Told} node */
function amountOf(node) {
  const { value, unit } = node;
  if (value === null)
    return node.valueReason || 'no value';
  if (typeof value === 'string')
    return `“${value}”`;
  if (node.quantity && typeof value === 'number' && (unit === 'W' || unit === 'A' || unit === 'C'))
    return unit === 'C' ? degrees(value) : si(value, unit);
  return minus(String(value)) + (unit ? '\u00a0' + unit : '');
}

/**
 * "total@MAX" and "group:bus" as people say it; below the group its outputs by their own names.
 * @param {string} quantity
 * @param {Told} [whole]
 */
function titleOf(quantity, whole) {
  if (quantity.startsWith('group:'))
    return whole?.quantity?.startsWith('group:') && quantity.startsWith(whole.quantity + '.') ? quantity.slice(whole.quantity.length + 1) : quantity.slice(6);
  const plain = quantity.replace(/^rail:/, 'rail ').replace(/^static:/, 'leakage of ').replace(/^(total|static|dynamic)(?=@|$)/, '$1 power').replace(/@(\w+)$/, ', process $1');
  return plain[0].toUpperCase() + plain.slice(1);
}

/**
 * What one line says of a node.
 * @param {Told} node
 * @param {Told} [whole] the one above it
 * @returns {import('./dom.js').Child[]}
 */
function headOf(node, whole) {
  const share = whole && node.term !== undefined && whole.value && node.value ? `, ${percent(node.value, whole.value)}` : '';
  const of = !node.cell || whole?.cell && whole.group === node.group && whole.block === node.block ? '' : ` of ${node.group}${node.process ? `, process ${node.process}` : ''}`;
  return [element('strong', {}, node.cell || titleOf(node.quantity, whole)), `${of} = ${amountOf(node)}${share}`, ...(node.meaning ? [' ', element('span', { class: 'soft' }, node.meaning)] : [])];
}

/** @param {string} file @param {number | undefined} line */
const placeOf = (file, line) => file.replace(/^.*\/(?=[^/]*\.cfg$)/, '') + (line ? `, line ${line}` : '');

/** @param {{kind: string, from?: string, file?: string, line?: number}} origin */
function originOf({ kind, from, file, line }) {
  // The page's own text of an edited design is one line.
  const place = file && (kind === 'default' || Number(line) > 1) ? `, ${placeOf(file, line)}` : '';
  return (kOrigins[kind] || kind) + (from ? (kind === 'carried' ? ' from ' : ', ') + from : '') + place;
}

/** @param {{file: string, line: number, text: string}} piece */
function source({ file, line, text }) {
  const lines = text.split('\n'), margin = Math.min(...lines.filter(one => one.trim()).map(one => one.search(/\S/)));
  return [element('p', { class: 'soft' }, placeOf(file, line)), element('pre', { tabindex: '0', role: 'region', 'aria-label': `Source, ${placeOf(file, line)}` }, lines.map(one => one.slice(margin)).join('\n'))];
}

/** @param {any} lookUp */
function rowOf({ table, keys, value, valueReason, unit, file, line }) {
  const row = `${table}[${keys.filter(Boolean).join('.')}]`;
  return element('p', {}, element('span', { class: value === null ? 'bad' : 'good' }, value === null ? '✗ ' : '✓ '),
    value === null ? `Looked up ${row}: ${valueReason || 'no such row'}${file ? `, ${placeOf(file, undefined)}` : ''}`
      : `Looked up ${row} = ${typeof value === 'string' ? `“${value}”` : minus(String(value))}${unit ? '\u00a0' + unit : ''}${file ? `, ${placeOf(file, line)}` : ''}`);
}

/** @param {Told} node that is all told in one line: a value that was typed, or carried, or stands by default */
const isPlain = node => !node.cut && !node.repeats && node.origin && !node.lookUps.length && !node.operands.length;

/** How a number comes about, as a tree that opens piece by piece. */
export class Explainer {
  /** @param {(request: object) => Promise<any>} ask */
  constructor(ask) {
    this.ask = ask;
    this.asked = {};
    this.dialog = /** @type {HTMLDialogElement} */ (byId('why'));
    this.tree = byId('why-tree');
    this.quantity = '';
    this.dialog.addEventListener('keydown', event => this.#walk(event));
    this.dialog.addEventListener('close', () => this.#back());
  }

  /**
   * @param {string} quantity
   * @param {{file: string, text: string}} design
   */
  async open(quantity, design) {
    this.asked = { do: 'explain', ...design, quantity };
    this.quantity = quantity;
    const asked = this.asked;
    const { explanation: node, error } = await this.ask({ ...asked, depth: 1 });
    if (asked !== this.asked)
      return;
    byId('why-h').replaceChildren(...(error ? [quantity] : headOf({ ...node, meaning: '' })));
    this.tree.replaceChildren(...(error ? [element('p', { class: 'error' }, error)] : [element('p', { class: 'soft' }, node.meaning), ...this.#partsOf(node, [])]));
    if (!this.dialog.open)
      this.dialog.showModal();
    this.dialog.scrollTop = 0;
  }

  /**
   * All that is said of a node below its line.
   * @param {Told} node
   * @param {Way} way
   * @returns {HTMLElement[]}
   */
  #partsOf(node, way) {
    /** @type {HTMLElement[]} */
    const parts = [];
    const say = (/** @type {string} */ text) => parts.push(element('p', {}, text));
    if (node.formula && !node.source)
      say('= ' + node.formula);
    if (node.origin) {
      const words = originOf(node.origin);
      say(words[0].toUpperCase() + words.slice(1) + '.');
    }
    if (node.call)
      say('Computed by ' + node.call);
    if (node.source && !isPlain(node)) {
      parts.push(...source({ ...node.source, text: node.formula }), ...(node.member || []).flatMap(source));
      if (node.operands.length || node.cut || node.lookUps.length)
        parts.push(this.#later(['What else the formula names'], async () => {
          const { explanation } = await this.ask({ ...this.asked, path: way, depth: 0 });
          return explanation?.sources.length ? explanation.sources.flatMap(source) : [element('p', {}, 'Nothing but cells and tables.')];
        }));
    }
    parts.push(...node.lookUps.map(rowOf));
    parts.push(...this.#operands(node, way, 0));
    return parts;
  }

  /** @param {Told} node @param {Way} way @param {number} first @returns {HTMLElement[]} */
  #operands(node, way, first) {
    const made = node.operands.slice(first, first + kAtOnce).map((/** @type {Told} */ operand, /** @type {number} */ i) => this.#operand(operand, node, [...way, first + i]));
    const left = node.operands.length - first - kAtOnce;
    if (left > 0) {
      const more = button(`Show more of ${node.operands.length}`, () => more.replaceWith(...this.#operands(node, way, first + kAtOnce)));
      made.push(more);
    }
    return made;
  }

  /** @param {Told} node @param {Told} whole @param {Way} way */
  #operand(node, whole, way) {
    if (isPlain(node))
      return element('p', { class: 'leaf' }, ...headOf(node, whole), element('span', { class: 'soft' }, (node.meaning ? ', ' : ' ') + originOf(node.origin)));
    return this.#later(headOf(node, whole), async () => {
      if (!node.cut && !node.repeats)
        return this.#partsOf(node, way);
      const { explanation, error } = await this.ask({ ...this.asked, path: way, depth: 1 });
      return error ? [element('p', { class: 'error' }, error)] : this.#partsOf(explanation, way);
    });
  }

  /**
   * Filled when it is opened first.
   * @param {import('./dom.js').Child[]} line
   * @param {() => Promise<HTMLElement[]>} fill
   */
  #later(line, fill) {
    const box = /** @type {HTMLDetailsElement} */ (element('details', {}, element('summary', {}, element('span', {}, ...line))));
    box.addEventListener('toggle', async () => {
      if (!box.open || box.dataset.filled)
        return;
      box.dataset.filled = 'yes';
      box.append(...await fill());
    });
    return box;
  }

  // Arrows go through the tree, as in any other.
  /** @param {KeyboardEvent} event */
  #walk(event) {
    const line = document.activeElement;
    const box = line?.parentElement;
    if (!(line instanceof HTMLElement) || !(box instanceof HTMLDetailsElement))
      return;
    const lines = [.../** @type {NodeListOf<HTMLElement>} */ (this.tree.querySelectorAll('summary'))].filter(one => !one.parentElement?.parentElement?.closest('details:not([open])'));
    const at = lines.indexOf(line);
    const outer = box.parentElement?.closest('details')?.querySelector('summary');
    if (event.key === 'ArrowDown')
      lines[at + 1]?.focus();
    else if (event.key === 'ArrowUp')
      lines[at - 1]?.focus();
    else if (event.key === 'ArrowRight' && box.open)
      lines[at + 1]?.focus();
    else if (event.key === 'ArrowRight')
      box.open = true;
    else if (event.key === 'ArrowLeft' && box.open)
      box.open = false;
    else if (event.key === 'ArrowLeft')
      outer?.focus();
    else
      return;
    event.preventDefault();
  }

  // The number may have been drawn anew meanwhile.
  #back() {
    this.asked = {};
    if (document.activeElement === document.body || !document.activeElement)
      [.../** @type {NodeListOf<HTMLElement>} */ (document.querySelectorAll('[data-why]'))].find(one => one.dataset.why === this.quantity)?.focus();
  }
}
