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

/**
 * The groups that are any: what was opened may hold anything.
 * @param {Tree} design
 * @returns {any[]}
 */
const groupsOf = design => (Array.isArray(design?.groups) ? design.groups : []).filter((/** @type {any} */ group) => group && typeof group === 'object');

/** The design as it came and as it is, and the way between. */
export class History {
  /** @param {Tree} design */
  constructor(design) {
    this.original = design;
    this.design = design;
    /** @type {WeakMap<object, object>} the groups that came, by those that they have become */
    this.came = new WeakMap();
    for (const group of groupsOf(design))
      this.came.set(group, group);
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
    this.#follow(design);
    this.design = design;
  }

  /**
   * A group that is written anew at its place is still the same.
   * @param {Tree} design
   */
  #follow(design) {
    const before = groupsOf(this.design), after = groupsOf(design);
    if (before.length !== after.length)
      return; // what comes or goes is no group that was
    after.forEach((group, i) => {
      const came = !this.came.has(group) && this.came.get(before[i]);
      if (came)
        this.came.set(group, came);
    });
  }

  /**
   * A group as it came, whatever its name and place are now; undefined for a new one.
   * @param {any} group
   */
  originalOf(group) {
    return group && typeof group === 'object' ? this.came.get(group) : undefined;
  }

  /**
   * What stood at a path when the design came; for a field of a group in the group that it was then.
   * @param {Path} path
   * @returns {{value: any} | undefined} nothing for what has been added
   */
  originally(path) {
    if (path[0] !== 'groups' || path.length < 2)
      return { value: valueAt(this.original, path) };
    const came = this.originalOf(valueAt(this.design, path.slice(0, 2)));
    return came && { value: valueAt(came, path.slice(2)) };
  }

  /** The groups that came and are no longer there, by their places then. @returns {[number, any][]} */
  removed() {
    const here = new Set(groupsOf(this.design).map((/** @type {any} */ group) => this.came.get(group)));
    return [...groupsOf(this.original).entries()].filter(([, group]) => !here.has(group));
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
