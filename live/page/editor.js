import { button, byId, element, why } from './dom.js';
import { pathText, same, valueAt } from './history.js';
import { si } from './numbers.js';

/** @typedef {import('./history.js').Path} Path */
/**
 * @typedef {object} Input what the catalogue tells of one
 * @property {string} cell
 * @property {string} type
 * @property {string} unit
 * @property {string} default
 * @property {string} legal
 * @property {string} meaning
 * @property {string[]} [words]
 * @property {number[]} [numbers]
 * @property {number} [lowest]
 * @property {number} [highest]
 */
/** @typedef {{block: string, title: string, subsystem: string, takesClock: boolean, inputs: Input[]}} Kind */
/** @typedef {{kinds: Kind[], device: Record<string, Input>, parts: string[], rails: string[]}} Catalogue */
/**
 * @typedef {object} Context
 * @property {Catalogue} catalogue
 * @property {() => any} design
 * @property {(path: Path) => {value: any} | undefined} originally what stood there when the design came
 * @property {(group: any) => any} originalOf a group as it came
 * @property {() => [number, any][]} removed groups that came and are gone
 * @property {() => any} result the last estimate
 * @property {(path: Path, value: any) => void} set while something is typed
 * @property {(path: Path, value: any) => void} put at once, with a new look of the editor
 * @property {() => void} settle
 */

const kAtOnce = 100; // groups that are listed before somebody asks for more
const kGrades = 'Grades other than the part’s';
const kOthers = ['parameters', 'static', 'supplies', 'sequence', 'modes', 'thermal', 'battery', 'include', 'description'];

/**
 * What a person typed, as JSON has it: a number, or a text; nothing for nothing.
 * @param {string} text
 * @param {boolean} words
 */
export function typed(text, words) {
  const plain = text.trim();
  if (plain === '')
    return undefined;
  if (plain.startsWith('{')) {
    try {
      return JSON.parse(plain); // a distribution
    } catch {
      return plain;
    }
  }
  return !words && /^-?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?$/.test(plain) ? Number(plain) : plain;
}

/** The fields of a design, which follow it. */
export class Editor {
  /** @param {HTMLElement} root @param {Context} context */
  constructor(root, context) {
    this.root = root;
    this.context = context;
    /** @type {Set<number>} */
    this.openGroups = new Set();
    /** @type {Set<string>} */
    this.openSections = new Set(['Groups', 'Device and environment', ...(Object.keys(context.design().device || {}).some(name => name !== 'part') ? [kGrades] : [])]);
    this.shown = kAtOnce;
    this.search = '';
    this.problem = '';
  }

  /** All anew, where the keyboard was. */
  render() {
    const at = document.activeElement instanceof HTMLElement ? document.activeElement.dataset.key : undefined;
    this.root.replaceChildren(
      this.#section('Device and environment', () => [this.#device(), this.#section(kGrades, () => [this.#grades()], 'minor'), this.#environment()]),
      this.#section('Budgets, rails and regulators', () => [this.#budgets(), this.#rails()]),
      this.#section('Groups', () => this.#groups()),
      this.#section('All else, as JSON', () => [this.#others()]));
    this.follow();
    if (at)
      this.#find(at)?.focus();
  }

  /** @param {string} key @returns {HTMLElement | undefined} */
  #find(key) {
    return [.../** @type {NodeListOf<HTMLElement>} */ (this.root.querySelectorAll('[data-key]'))].find(n => n.dataset.key === key);
  }

  /** @param {string} name @param {() => HTMLElement[]} fill @param {string} kind */
  #section(name, fill, kind = 'section') {
    const box = /** @type {HTMLDetailsElement} */ (element('details', { class: kind, open: this.openSections.has(name) }, element('summary', {}, element('strong', {}, name))));
    const inside = element('div', { class: 'inside' });
    box.append(inside);
    if (box.open)
      inside.append(...fill());
    box.addEventListener('toggle', () => {
      if (box.open)
        this.openSections.add(name);
      else
        this.openSections.delete(name);
      if (box.open && !inside.childElementCount) {
        inside.append(...fill());
        this.follow();
      }
    });
    return box;
  }

  /**
   * A field of the design.
   * @param {Path} path
   * @param {{label: string, unit?: string, fallback?: string, derived?: string, hint?: string, words?: string[], numbers?: number[], text?: boolean, list?: string, range?: [number, number, number]}} field
   */
  field(path, field) {
    const key = pathText(path);
    const id = 'f-' + key;
    const value = valueAt(this.context.design(), path);
    const shown = value === undefined ? '' : typeof value === 'string' ? value : JSON.stringify(value);
    const box = element('div', { class: 'field', 'data-field': key });
    const reset = button('reset this', () => this.context.put(path, this.context.originally(path)?.value), { hidden: true, 'aria-label': `Reset ${field.label}`, 'data-reset': key });
    const choices = field.words || field.numbers?.map(String);
    const common = { id, 'data-key': key, 'data-derived': field.derived, title: field.hint, 'aria-describedby': 'e-' + key };
    /** @type {HTMLElement} */
    let control;
    /** @type {HTMLInputElement | undefined} */
    let slider;
    const enter = (/** @type {string} */ text) => this.context.set(path, typed(text, Boolean(field.text)));
    if (choices) {
      const known = ['', ...choices];
      if (!known.includes(shown))
        known.push(shown);
      control = element('select', common, ...known.map(word => element('option', { value: word, selected: word === shown }, word || (field.fallback ? `${field.fallback}${/^by |^none|^the /.test(field.fallback) ? '' : ' (default)'}` : 'default'))));
      control.addEventListener('change', () => enter(/** @type {HTMLSelectElement} */ (control).value));
    } else {
      control = element('input', { ...common, value: shown, placeholder: field.fallback || '', autocomplete: 'off', spellcheck: 'false', list: field.list, inputmode: field.text ? 'text' : undefined });
      const input = /** @type {HTMLInputElement} */ (control);
      input.addEventListener('input', () => { enter(input.value); if (slider && Number.isFinite(parseFloat(input.value))) slider.value = String(parseFloat(input.value)); });
      input.addEventListener('change', () => this.context.settle());
      if (field.range) {
        const [least, most, step] = field.range;
        slider = /** @type {HTMLInputElement} */ (element('input', { type: 'range', class: 'range', min: String(least), max: String(most), step: String(step), 'aria-label': field.label + ', slider', 'data-slider': key }));
        slider.value = String(parseFloat(shown || field.fallback || '0'));
        const moved = slider;
        moved.classList.toggle('unset', !shown);
        input.addEventListener('input', () => moved.classList.toggle('unset', !input.value));
        slider.addEventListener('input', () => { input.value = moved.value; moved.classList.remove('unset'); enter(moved.value); });
        slider.addEventListener('change', () => this.context.settle());
      }
    }
    box.append(element('label', { for: id }, field.label), reset,
      element('div', { class: 'value' }, control, ...(field.unit ? [element('span', { class: 'unit' }, field.unit)] : [])),
      ...(slider ? [slider] : []), element('p', { class: 'error', id: 'e-' + key, role: 'alert', hidden: true }));
    return box;
  }

  #device() {
    const fields = element('div', { class: 'fields' });
    const parts = element('datalist', { id: 'parts' }, ...this.context.catalogue.parts.map(part => element('option', { value: part })));
    fields.append(this.field(['name'], { label: 'Name of the design', text: true }), parts,
      this.field(['device', 'part'], { label: 'Part', text: true, list: 'parts', hint: 'An orderable part or a device; none: dynamic power only' }));
    return fields;
  }

  #grades() {
    const fields = element('div', { class: 'fields' });
    for (const [name, input] of Object.entries(this.context.catalogue.device)) {
      if (name !== 'part')
        fields.append(this.field(['device', name], { label: (name[0].toUpperCase() + name.slice(1)).replace(/(.)([A-Z])/g, (_, before, letter) => `${before} ${letter.toLowerCase()}`), text: true, words: input.words, fallback: 'by the part', hint: input.meaning }));
    }
    return fields;
  }

  #environment() {
    const fields = element('div', { class: 'fields' });
    fields.append(
      this.field(['environment', 'ambientTemperature'], { label: 'Ambient temperature', unit: '°C', range: [-40, 100, 1], hint: 'From which the junction’s is found' }),
      this.field(['environment', 'junctionTemperature'], { label: 'Junction temperature', unit: '°C', range: [-40, 125, 1], hint: 'Given directly, instead of the ambient' }),
      this.field(['environment', 'junctionLimit'], { label: 'Junction limit', unit: '°C' }));
    const cooling = valueAt(this.context.design(), ['environment', 'cooling']);
    if (Array.isArray(cooling)) {
      cooling.forEach((one, i) => fields.append(this.field(['environment', 'cooling', i, 'thetaJA'], { label: `θJA, ${one && one.name || 'cooling ' + (i + 1)}`, unit: '°C/W', range: [0.05, 10, 0.05] })));
    } else {
      fields.append(this.field(['environment', 'thetaJA'], { label: 'θJA', unit: '°C/W', range: [0.05, 20, 0.05], hint: 'From the junction to the air' }));
    }
    return fields;
  }

  #budgets() {
    const fields = element('div', { class: 'fields' });
    fields.append(this.field(['budgets', 'totalPower'], { label: 'Budget of the total', unit: 'W' }),
      this.field(['budgets', 'junctionTemperature'], { label: 'Budget of the junction', unit: '°C' }),
      this.field(['budgets', 'judgedAt'], { label: 'Budgets count at', text: true, words: ['TYP', 'MAX'], fallback: 'the worse' }));
    return fields;
  }

  #rails() {
    const result = this.context.result();
    const design = this.context.design();
    const used = new Set([...(result ? result.sides[0].rails.filter((/** @type {any} */ r) => r.totalAmperes || r.powerUpAmperes).map((/** @type {any} */ r) => r.rail) : []),
      ...Object.keys(design.rails || {}), ...Object.keys(design.regulators || {}), ...Object.keys(valueAt(design, ['budgets', 'rails']) || {})]);
    const fields = element('div', { class: 'fields' });
    for (const rail of this.context.catalogue.rails.filter(name => used.has(name))) {
      const volts = result?.sides[0].rails.find((/** @type {any} */ r) => r.rail === rail)?.volts;
      fields.append(this.field(['rails', rail], { label: `${rail}, volts`, unit: 'V', fallback: volts === undefined ? '' : String(+volts.toPrecision(6)) }),
        this.field(['regulators', rail, 'maxCurrent'], { label: `${rail}, regulator’s largest current`, unit: 'A' }),
        this.field(['budgets', 'rails', rail], { label: `${rail}, budget`, unit: 'A' }));
    }
    return fields;
  }

  #others() {
    const fields = element('div', { class: 'fields' });
    for (const name of kOthers) {
      const value = valueAt(this.context.design(), [name]);
      const rows = value === undefined ? 1 : Math.min(12, JSON.stringify(value, null, 1).split('\n').length);
      const box = element('div', { class: 'field wide', 'data-field': name });
      const area = /** @type {HTMLTextAreaElement} */ (element('textarea', { id: 'f-' + name, 'data-key': name, rows: String(rows), spellcheck: 'false', 'aria-describedby': 'e-' + name }));
      area.value = value === undefined ? '' : JSON.stringify(value, null, 1);
      const error = element('p', { class: 'error', id: 'e-' + name, role: 'alert', hidden: true });
      area.addEventListener('input', () => {
        try {
          this.context.set([name], area.value.trim() ? JSON.parse(area.value) : undefined);
        } catch (wrong) {
          error.hidden = false;
          error.textContent = 'No JSON yet: ' + (wrong instanceof Error ? wrong.message : wrong);
        }
      });
      area.addEventListener('change', () => this.context.settle());
      box.append(element('label', { for: area.id }, name), button('reset this', () => this.context.put([name], this.context.originally([name])?.value), { hidden: true, 'data-reset': name, 'aria-label': `Reset ${name}` }),
        element('div', { class: 'value' }, area), error);
      fields.append(box);
    }
    return fields;
  }

  // ---- Groups ----

  #groups() {
    const search = /** @type {HTMLInputElement} */ (element('input', { type: 'search', value: this.search, placeholder: 'Search names, kinds and inputs (/)', 'aria-label': 'Search groups', 'data-key': 'search', id: 'search' }));
    const list = element('div', {});
    search.addEventListener('input', () => { this.search = search.value; this.shown = kAtOnce; this.#list(list); this.follow(); });
    this.#list(list);
    return [element('div', { class: 'bar-of-tools' }, search, button('Add a group', () => this.#menu(), { 'data-key': 'add' })), list, ...this.#removed()];
  }

  // What has been taken out, to be put back.
  #removed() {
    const removed = this.context.removed();
    if (!removed.length)
      return [];
    const back = (/** @type {number} */ place, /** @type {any} */ group) => {
      const all = [...(this.context.design().groups || [])];
      const to = Math.min(place, all.length);
      all.splice(to, 0, group);
      this.openGroups = new Set([...this.openGroups].map(at => at >= to ? at + 1 : at));
      this.context.put(['groups'], all);
      this.#find(`groups[${to}]`)?.focus();
    };
    return [element('ul', { class: 'removed', 'aria-label': 'Groups that have been removed' }, ...removed.slice(0, kAtOnce).map(([place, group]) =>
      element('li', {}, element('span', {}, element('s', {}, String(group.name ?? group.block)), ' ', element('span', { class: 'markt' }, 'removed')),
        button('put back', () => back(place, group), { 'aria-label': `Put back ${group.name ?? group.block}` }))))];
  }

  /** @param {HTMLElement} list */
  #list(list) {
    const groups = valueAt(this.context.design(), ['groups']) || [];
    const wanted = this.search.toLowerCase();
    const found = [...groups.keys()]
      .filter((/** @type {number} */ i) => !wanted || JSON.stringify(groups[i]).toLowerCase().includes(wanted) || (this.#kind(groups[i])?.title || '').toLowerCase().includes(wanted));
    list.replaceChildren(...found.slice(0, this.shown).map((/** @type {number} */ i) => this.#group(i)));
    if (found.length > this.shown)
      list.append(button(`Show more of ${found.length}`, () => { this.shown += kAtOnce; this.#list(list); this.follow(); }));
    if (!found.length)
      list.append(element('p', { class: 'soft' }, groups.length ? 'No group has that.' : 'There are no groups yet: add one.'));
  }

  /** @param {any} group @returns {Kind | undefined} */
  #kind(group) {
    return this.context.catalogue.kinds.find(kind => kind.block === group?.block);
  }

  /** @param {number} i */
  #group(i) {
    const group = this.context.design().groups[i];
    const kind = this.#kind(group);
    const box = /** @type {HTMLDetailsElement} */ (element('details', { 'data-group': String(i), open: this.openGroups.has(i) },
      element('summary', { 'data-key': `groups[${i}]` }, element('span', { class: 'group' }, element('strong', { class: 'n' }, String(group?.name ?? group?.block ?? '')),
        element('span', { class: 'soft k' }, kind ? kind.title : String(group?.block ?? 'no kind'))))));
    const inside = element('div', { class: 'inside' });
    box.append(inside);
    const fill = () => inside.append(this.#actions(i), this.#inputs(i, kind));
    if (box.open)
      fill();
    box.addEventListener('toggle', () => {
      if (box.open)
        this.openGroups.add(i);
      else
        this.openGroups.delete(i);
      if (box.open && !inside.childElementCount) {
        fill();
        this.follow();
      }
    });
    // Its power is a button of its own, beside the line and not in it.
    return element('div', { class: 'row' }, element('span', { class: 'w' }), box);
  }

  /** @param {number} i */
  #actions(i) {
    const groups = () => [...this.context.design().groups];
    const rename = (/** @type {string} */ name) => {
      const taken = new Set(groups().map(group => group?.name));
      for (let n = 2; ; ++n) {
        if (!taken.has(`${name} ${n}`))
          return `${name} ${n}`;
      }
    };
    const moved = (/** @type {number} */ to) => {
      const all = groups();
      all.splice(to, 0, ...all.splice(i, 1));
      const other = this.openGroups.has(to);
      if (this.openGroups.has(i) !== other) {
        this.openGroups[other ? 'add' : 'delete'](i);
        this.openGroups[other ? 'delete' : 'add'](to);
      }
      this.context.put(['groups'], all);
      this.#find(`groups[${to}]`)?.focus();
    };
    return element('div', { class: 'bar-of-tools' },
      button('Copy', () => {
        const all = groups();
        all.splice(i + 1, 0, { ...all[i], name: rename(String(all[i].name ?? all[i].block)) });
        this.openGroups = new Set([...this.openGroups].map(at => at > i ? at + 1 : at));
        this.context.put(['groups'], all);
      }),
      button('Remove', () => {
        const all = groups();
        all.splice(i, 1);
        this.openGroups = new Set([...this.openGroups].filter(at => at !== i).map(at => at > i ? at - 1 : at));
        this.context.put(['groups'], all);
      }),
      button('Up', () => moved(i - 1), { disabled: i === 0 }),
      button('Down', () => moved(i + 1), { disabled: i + 1 === this.context.design().groups.length }));
  }

  /** @param {number} i @param {Kind | undefined} kind */
  #inputs(i, kind) {
    const group = this.context.design().groups[i];
    const fields = element('div', { class: 'fields' });
    fields.append(this.field(['groups', i, 'name'], { label: 'Name', text: true }),
      this.field(['groups', i, 'count'], { label: 'Count', fallback: '1', hint: 'Like instances' }),
      this.field(['groups', i, 'in'], { label: 'In', text: true, hint: 'Where it stands in the hierarchy: datapath/fir' }));
    if (kind?.takesClock) {
      const clocks = this.context.design().groups.filter((/** @type {any} */ g) => g?.block === 'Clock' && g.name).map((/** @type {any} */ g) => String(g.name));
      fields.append(this.field(['groups', i, 'clock'], { label: 'Clock', text: true, words: clocks, fallback: 'none', hint: 'The Clock group that clocks it' }));
    }
    const now = new Map(this.#resultOf(i)?.inputs.map((/** @type {any} */ input) => [input.cell, input]));
    for (const input of kind?.inputs || []) {
      const path = ['groups', i, 'inputs', input.cell];
      const given = valueAt(this.context.design(), path);
      const derived = now.get(input.cell);
      const fallback = fallbackOf(derived, input.default);
      fields.append(this.field(path, { label: `${input.cell}: ${input.meaning}`, unit: input.unit, fallback, text: input.type === 'string', words: input.words, numbers: input.numbers, derived: input.cell,
        hint: input.legal, range: rangeOf(input, given ?? derived?.value) }));
    }
    if (!kind)
      fields.append(element('p', { class: 'error' }, `There is no kind ${group?.block}.`));
    return fields;
  }

  /** @param {number} i */
  #resultOf(i) {
    const result = this.context.result();
    const group = valueAt(this.context.design(), ['groups', i]);
    const at = result?.groups[i];
    const fits = (/** @type {any} */ found) => found && found.block === group?.block && (!group?.name || found.name === group.name);
    return fits(at) ? at : result?.groups.find(fits);
  }

  #menu() {
    const dialog = /** @type {HTMLDialogElement} */ (byId('kinds'));
    const search = /** @type {HTMLInputElement} */ (byId('kinds-search'));
    const list = byId('kinds-list');
    const fill = () => {
      const wanted = search.value.toLowerCase();
      let room = '';
      list.replaceChildren();
      for (const kind of this.context.catalogue.kinds) {
        if (!(kind.block + ' ' + kind.title + ' ' + kind.subsystem).toLowerCase().includes(wanted))
          continue;
        if (kind.subsystem !== room)
          list.append(element('li', { class: 'room' }, room = kind.subsystem));
        const choose = button('', () => { dialog.close(); this.#add(kind); }, { class: 'kind' });
        choose.append(element('strong', {}, kind.title), ' ', element('span', { class: 'soft' }, `${kind.block}, ${kind.inputs.length} inputs`));
        list.append(element('li', {}, choose));
      }
    };
    search.value = '';
    search.oninput = fill;
    fill();
    dialog.showModal();
    search.focus();
  }

  /** @param {Kind} kind */
  #add(kind) {
    const all = [...(this.context.design().groups || [])];
    const names = new Set(all.map(group => group?.name));
    let name = kind.title;
    for (let n = 2; names.has(name); ++n)
      name = `${kind.title} ${n}`;
    all.push({ block: kind.block, name, inputs: {} });
    this.openGroups.add(all.length - 1);
    this.search = '';
    this.shown = Math.max(this.shown, all.length);
    this.context.put(['groups'], all);
    this.#find(`groups[${all.length - 1}].name`)?.focus();
  }

  // ---- What follows an estimate ----

  /**
   * Watts, marks and messages follow the design, its estimate and what is wrong with it.
   * @param {string} problem
   */
  follow(problem = this.problem) {
    const design = this.context.design();
    for (const box of /** @type {NodeListOf<HTMLElement>} */ (this.root.querySelectorAll('[data-group]'))) {
      const i = Number(box.dataset.group);
      const group = design.groups?.[i];
      const result = this.#resultOf(i);
      const before = this.context.originalOf(group);
      box.classList.toggle('changed', Boolean(before) && !same(before, group));
      box.classList.toggle('new', !before);
      const watts = box.previousElementSibling;
      const amount = !result ? '' : result.onlyCarries ? 'carries' : si(result.watts, 'W');
      const quantity = result && `group:${result.name}`;
      if (watts && (watts.textContent !== amount || watts.querySelector('button')?.dataset.why !== quantity))
        watts.replaceChildren(quantity ? why(quantity, amount) : '');
      const name = box.querySelector('.n');
      if (box instanceof HTMLDetailsElement && box.open)
        this.#derive(box, result);
      const words = String(group?.name ?? group?.block ?? '');
      if (name && name.textContent !== words)
        name.textContent = words;
    }
    for (const reset of /** @type {NodeListOf<HTMLElement>} */ (this.root.querySelectorAll('[data-reset]'))) {
      const path = pathOf(String(reset.dataset.reset));
      const came = this.context.originally(path);
      const changed = came !== undefined && !same(valueAt(design, path), came.value);
      reset.hidden = !changed;
      reset.parentElement?.classList.toggle('changed', changed);
    }
    this.tell(problem);
  }

  /**
   * What a group's empty fields come to by themselves.
   * @param {HTMLElement} box
   * @param {any} result
   */
  #derive(box, result) {
    const now = new Map(result?.inputs.map((/** @type {any} */ input) => [input.cell, input]));
    for (const control of /** @type {NodeListOf<HTMLInputElement>} */ (box.querySelectorAll('input[data-derived]'))) {
      const fallback = fallbackOf(now.get(control.dataset.derived), control.placeholder);
      if (control.placeholder !== fallback)
        control.placeholder = fallback;
    }
  }

  /**
   * Shows a message beside the field that it names.
   * @param {string} problem empty for none
   */
  tell(problem) {
    this.problem = problem;
    for (const error of /** @type {NodeListOf<HTMLElement>} */ (this.root.querySelectorAll('.error[id]:not([hidden])'))) {
      error.hidden = true;
      this.#mark(error, false);
    }
    if (!problem)
      return;
    const [place, words] = placeOf(problem);
    const error = [.../** @type {NodeListOf<HTMLElement>} */ (this.root.querySelectorAll('.error[id]'))]
      .filter(one => place === one.id.slice(2) || place.startsWith(one.id.slice(2) + '.') || place.startsWith(one.id.slice(2) + '['))
      .sort((a, b) => b.id.length - a.id.length)[0];
    if (!error)
      return;
    error.textContent = words;
    error.hidden = false;
    this.#mark(error, true);
  }

  /** @param {HTMLElement} error @param {boolean} wrong */
  #mark(error, wrong) {
    const control = document.getElementById('f-' + error.id.slice(2));
    if (wrong)
      control?.setAttribute('aria-invalid', 'true');
    else
      control?.removeAttribute('aria-invalid');
  }
}

/** @param {any} derived what the estimate tells of an input @param {string} otherwise */
const fallbackOf = (derived, otherwise) => derived && derived.origin !== 'design' && derived.value !== null ? `${derived.value}` : otherwise;

/**
 * The place and the words of a message: "design.json:12: groups[2].inputs.X: words".
 * @param {string} problem
 * @returns {[string, string]}
 */
export function placeOf(problem) {
  const found = /^(?:[^\n]*?:\d+: )?([A-Za-z_$][\w$]*(?:\[\d+\])?(?:[.\[][\w\]$.\[]*)?): ([^]*)$/.exec(problem);
  return found ? [found[1], found[2]] : ['', problem];
}

/** @param {string} key @returns {Path} */
function pathOf(key) {
  return [...key.matchAll(/\[(\d+)\]|[^.[\]]+/g)].map(part => part[1] === undefined ? part[0] : Number(part[1]));
}

/**
 * The ends and the step of a slider, for what sliders fit.
 * @param {Input} input
 * @param {any} value
 * @returns {[number, number, number] | undefined}
 */
function rangeOf(input, value) {
  if (input.type === 'string' || input.words || input.numbers)
    return undefined;
  if (input.lowest === 0 && input.highest === 1)
    return [0, 1, 0.01];
  const about = Number(value ?? input.default);
  if (input.unit === 'MHz')
    return [Math.max(0, input.lowest ?? 0), Math.min(input.highest ?? Infinity, Math.max(500, Math.ceil(Number.isFinite(about) ? 2 * about / 100 : 0) * 100)), 1];
  if (input.unit === 'C')
    return [-40, 125, 1];
  return undefined;
}
