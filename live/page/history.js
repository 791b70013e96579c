/** @typedef {(string | number)[]} Path */
/** @typedef {any} Tree JSON */

/**
 * What stands at a path; undefined if nothing does.
 * @param {Tree} tree
 * @param {Path} path
 */
export function valueAt(tree, path) {
  for (const step of path) {
    if (tree === null || typeof tree !== 'object')
      return undefined;
    tree = tree[step];
  }
  return tree;
}

/**
 * A tree with a value set, or removed if it is undefined. It shares all else with the old one, which stays.
 * @param {Tree} tree
 * @param {Path} path
 * @param {any} value
 * @returns {Tree}
 */
export function withValue(tree, path, value) {
  if (path.length === 0)
    return value;
  const [step, ...rest] = path;
  const copy = Array.isArray(tree) ? [...tree] : { ...(tree && typeof tree === 'object' ? tree : {}) };
  const inner = withValue(Object.hasOwn(copy, step) ? /** @type {any} */ (copy)[step] : undefined, rest, value);
  if (inner === undefined)
    delete /** @type {any} */ (copy)[step];
  else
    Object.defineProperty(copy, step, { value: inner, writable: true, enumerable: true, configurable: true });
  // An object that nothing is left in says no more than none, but for a group's.
  if (rest.length > 0 && typeof step === 'string' && inner && typeof inner === 'object' && !Array.isArray(inner) &&
      Object.keys(inner).length === 0 && value === undefined && step !== 'inputs')
    delete /** @type {any} */ (copy)[step];
  return copy;
}

/**
 * A path as messages of the tool write it: groups[2].inputs.CLOCK_FREQ
 * @param {Path} path
 */
export function pathText(path) {
  return path.map((step, i) => typeof step === 'number' ? `[${step}]` : (i ? '.' : '') + step).join('');
}

/** @param {any} a @param {any} b */
export function same(a, b) {
  return a === b || JSON.stringify(a) === JSON.stringify(b);
}

/** The design as it came and as it is, and the way between. */
export class History {
  /** @param {Tree} design */
  constructor(design) {
    this.original = design;
    this.design = design;
    /** @type {Tree[]} */
    this.before = [];
    /** @type {Tree[]} */
    this.after = [];
    this.step = '';
  }

  /**
   * One step for what is typed in one field; a step without a name stands for itself.
   * @param {Tree} design
   * @param {string} step
   */
  change(design, step = '') {
    if (!step || step !== this.step || this.before.length === 0)
      this.before.push(this.design);
    this.step = step;
    this.after = [];
    this.design = design;
  }

  /** The next change is a step of its own. */
  settle() {
    this.step = '';
  }

  undo() {
    return this.#go(this.before, this.after);
  }

  redo() {
    return this.#go(this.after, this.before);
  }

  /** @param {Tree[]} from @param {Tree[]} to */
  #go(from, to) {
    if (from.length === 0)
      return false;
    to.push(this.design);
    this.design = from.pop();
    this.step = '';
    return true;
  }
}
