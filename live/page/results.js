import { element, table, why } from './dom.js';
import { change, degrees, minus, percent, si } from './numbers.js';

/** @typedef {any} Estimate what `zelm estimate --json` prints; `zelm schema --output` describes it */
/** @typedef {any} Side */

const kAtOnce = 60; // rows of a table

/** @param {Side} side */
const runsAway = side => Boolean(side.thermal && !side.thermal.converged);

/** @param {string} quantity @param {Side | undefined} side */
const at = (quantity, side) => side?.process ? `${quantity}@${side.process}` : quantity;

/** @param {number} value @param {Estimate | undefined} first @param {(estimate: Estimate) => number | null | undefined} of @param {(value: number) => string} shown */
function delta(value, first, of, shown) {
  const text = first ? change(value, of(first), shown) : '';
  return text ? [' ', element('span', { class: 'delta', title: 'against the design as it came' }, text)] : [];
}

/** @param {number} part @param {number} most @param {string} kind */
const piece = (part, most, kind) => element('i', { class: kind, style: `width:${most > 0 ? Math.min(100, Math.max(0, 100 * part / most)).toFixed(2) : 0}%` });
/** @param {...HTMLElement} pieces */
const bar = (...pieces) => element('span', { class: 'bar', 'aria-hidden': 'true' }, ...pieces);

const key = () => element('p', { class: 'key' }, 'Bars:', element('i', { class: 's', 'aria-hidden': 'true' }), 'static', element('i', { class: 'd', 'aria-hidden': 'true' }), 'dynamic');

/** @param {string} heading @param {...import('./dom.js').Child} inside */
const section = (heading, ...inside) => element('section', { class: heading.toLowerCase().replaceAll(' ', '-') }, element('h2', {}, heading), ...inside);

/** @param {Estimate} data */
function verdict(data) {
  const [side, other] = data.sides;
  const broken = data.budgets.filter((/** @type {any} */ b) => b.broken);
  const tight = data.budgets.filter((/** @type {any} */ b) => !b.broken && b.otherActual !== undefined && (b.otherActual === null || b.otherActual > b.limit));
  const lines = [
    ...data.sides.filter(runsAway).map((/** @type {Side} */ s) => `✗ Process ${s.process} finds no equilibrium: ${s.thermal.words}.`),
    // Without an equilibrium the amounts mean nothing.
    ...(broken.length && data.sides.some(runsAway) ? [`✗ Broken: ${broken.map((/** @type {any} */ b) => b.name).join(', ')}.`] : broken.map((/** @type {any} */ b) => `✗ Broken: ${b.words}.`)),
    ...(tight.length ? [`! Broken with process ${other?.process}: ${tight.map((/** @type {any} */ b) => `${b.name} (${b.otherActual === null ? 'none' : +b.otherActual.toPrecision(4)} of ${b.limit} ${b.unit})`).join(', ')}.`] : []),
    ...(data.budgets.length && !broken.length ? [`✓ Kept: ${data.budgets.length === 1 ? 'the one budget or limit' : `all ${data.budgets.length} budgets and limits`}${side.process ? ` with process ${side.process}` : ''}${other && !tight.length ? `, and with ${other.process}` : ''}.`] : []),
    ...(data.budgets.length ? [] : ['The design sets no budgets or limits.'])];
  const look = broken.length || runsAway(side) ? 'bad' : tight.length || data.sides.some(runsAway) ? 'mark' : data.budgets.length ? 'good' : '';
  return element('div', { class: 'verdict ' + look, role: 'note', 'aria-label': 'Verdict' }, element('ul', {}, ...lines.map(line => element('li', {}, line))));
}

/** @param {Estimate} data @param {Estimate} first */
function sides(data, first) {
  return element('div', { class: 'sides' }, ...data.sides.map((/** @type {Side} */ s, /** @type {number} */ i) => {
    const was = (/** @type {(side: Side) => any} */ of) => (/** @type {Estimate} */ e) => e.sides[i] && of(e.sides[i]);
    const list = element('dl', {});
    const add = (/** @type {string} */ name, /** @type {import('./dom.js').Child[]} */ ...value) => list.append(element('dt', {}, name), element('dd', {}, ...value));
    const watts = (/** @type {number} */ value) => si(value, 'W');
    if (s.process && !runsAway(s))
      add('Junction', why(at('junction', s), degrees(s.junctionTemperature)), ...delta(s.junctionTemperature, first, was(side => side.junctionTemperature), degrees));
    add('Dynamic', why('dynamic', si(data.dynamicWatts, 'W')), ...delta(data.dynamicWatts, first, e => e.dynamicWatts, watts));
    if (s.process && !runsAway(s))
      add('Static', why(at('static', s), si(s.staticWatts, 'W')), ...delta(s.staticWatts, first, was(side => side.staticWatts), watts));
    if (s.highestAmbientTemperature !== undefined)
      add('Highest ambient', degrees(s.highestAmbientTemperature));
    if (s.largestThetaJA)
      add('Largest θJA', s.largestThetaJA.toFixed(3) + ' °C/W');
    if (s.supplies)
      add('Board input', si(s.supplies.inputWatts, 'W'));
    if (data.offchipWatts)
      add('Off the chip', si(data.offchipWatts, 'W'));
    return element('div', { class: 'side' }, element('h3', {}, s.process ? `Process ${s.process}${i === 0 ? ', the design’s' : ''}` : 'Dynamic power only'),
      element('div', { class: 'figure' }, why(at('total', s), runsAway(s) ? 'Runaway' : si(s.totalWatts, 'W'))), ...delta(s.totalWatts, first, was(side => side.totalWatts), watts), list);
  }));
}

/**
 * What a budget holds to its limit, where it isn't modes' over their period.
 * @param {Estimate} data @param {string} name @param {Side | undefined} side
 */
function budgeted(data, name, side) {
  const rail = /^(?:current|regulator) of (.+)$/.exec(name)?.[1];
  const quantity = name === 'total power' ? 'total' : name === 'junction temperature' || name === 'junction limit' ? 'junction' : side?.rails.some((/** @type {any} */ r) => r.rail === rail) ? `rail:${rail}` : '';
  return (/** @type {string} */ text) => quantity && !data.period ? why(at(quantity, side), text) : text;
}

/** @param {Estimate} data */
function budgets(data) {
  const shown = (/** @type {number | null | undefined} */ v) => v === null || v === undefined ? 'none' : minus(v.toFixed(3));
  const rows = data.budgets.map((/** @type {any} */ b) => [b.name, element('span', { class: b.broken ? 'bad' : 'good' }, b.broken ? '✗ broken' : '✓ kept'), budgeted(data, b.name, data.sides[0])(shown(b.actual)), b.otherActual === undefined ? 'none' : budgeted(data, b.name, data.sides[1])(shown(b.otherActual)), shown(b.limit), b.unit === 'degrees' ? '°C' : b.unit,
    bar(piece(b.actual ?? b.limit, b.limit, b.broken ? 'over' : 'u'))]);
  return rows.length ? [section('Budgets and regulators', table('Against their limits, on both sides', ['Budget', 'Verdict', 'Actual', `At ${data.sides[1]?.process ?? 'other'}`, 'Limit', 'Unit', 'Used'], rows))] : [];
}

/** @param {Estimate} data @param {Estimate} first */
function rails(data, first) {
  const side = data.sides[0];
  const rows = side.rails.filter((/** @type {any} */ r) => r.totalAmperes || r.powerUpAmperes).sort((/** @type {any} */ a, /** @type {any} */ b) => b.watts - a.watts);
  const most = Math.max(0, ...rows.map((/** @type {any} */ r) => r.watts || 0));
  const before = new Map(first.sides[0].rails.map((/** @type {any} */ r) => [r.rail, r]));
  const other = (/** @type {string} */ rail) => data.sides[1]?.rails.find((/** @type {any} */ r) => r.rail === rail);
  const moved = (/** @type {any} */ r) => change(r.watts, before.get(r.rail)?.watts, v => si(v, 'W'));
  const anyMoved = rows.some(moved);
  // The model knows the power-up current for the worst case only.
  const powerUp = (/** @type {any} */ r) => Math.max(r.powerUpAmperes ?? 0, other(r.rail)?.powerUpAmperes ?? 0);
  return rows.length ? [section('Rails', key(), table(`With process ${side.process || 'none'}; * the static current is part of another rail’s`,
    ['Rail', 'Volts', 'Current', ...(data.sides[1] ? [`At ${data.sides[1].process}`] : []), 'Power-up', 'Power', ...(anyMoved ? ['Change'] : []), 'Parts'],
    rows.map((/** @type {any} */ r) => [r.rail + (r.staticCurrentInside ? ' *' : ''), r.volts.toFixed(3), why(at(`rail:${r.rail}`, side), si(r.totalAmperes, 'A')), ...(data.sides[1] ? [why(at(`rail:${r.rail}`, data.sides[1]), si(other(r.rail)?.totalAmperes, 'A'))] : []), si(powerUp(r), 'A'), si(r.watts, 'W'),
      ...(anyMoved ? [moved(r)] : []), bar(piece(r.staticWatts, most, 's'), piece(r.dynamicWatts, most, 'd'))])))] : [];
}

/** @param {Estimate} data */
function blocks(data) {
  /** @type {Map<string, number>} */
  const sums = new Map();
  for (const group of data.groups)
    sums.set(group.title, (sums.get(group.title) || 0) + group.watts);
  const rows = [...sums].filter(([, watts]) => watts !== 0).map(([name, watts]) => ({ name, watts, kind: 'd' }));
  if (data.staticWatts)
    rows.push({ name: 'Static power', watts: data.staticWatts, kind: 's' });
  rows.sort((a, b) => b.watts - a.watts);
  const most = Math.max(0, ...rows.map(row => row.watts));
  return rows.length ? [section('Power by block', table('Dynamic power by kind of block, and all static power', ['Block', 'Power', 'Share', 'Bar'],
    rows.map(row => [row.name, si(row.watts, 'W'), percent(row.watts, data.totalWatts), bar(piece(row.watts, most, row.kind))])))] : [];
}

/** @param {Estimate} data */
function groups(data) {
  const rows = data.groups.filter((/** @type {any} */ g) => g.watts).sort((/** @type {any} */ a, /** @type {any} */ b) => b.watts - a.watts);
  const most = Math.max(0, ...rows.map((/** @type {any} */ g) => g.watts));
  return rows.length ? [section('Largest groups', table(`${Math.min(12, rows.length)} of ${data.groups.length} groups`, ['Group', 'Kind', 'Power', 'Share', 'Bar'],
    rows.slice(0, 12).map((/** @type {any} */ g) => [g.name, g.block, why(`group:${g.name}`, si(g.watts, 'W')), percent(g.watts, data.totalWatts), bar(piece(g.watts, most, 'd'))])))] : [];
}

/** @param {Estimate} data */
function utilisation(data) {
  return data.utilisation.length ? [section('Utilisation', table('Of the device’s resources', ['Resource', 'Used', 'Available', 'Share', 'Bar'],
    data.utilisation.map((/** @type {any} */ u) => [u.resource, String(u.used), String(u.available), percent(u.used, u.available), bar(piece(u.used, u.available, u.used > u.available ? 'over' : 'u'))])))] : [];
}

/**
 * Total power over the junction's temperature, for both sides.
 * @param {Estimate} data
 */
function curve(data) {
  const drawn = data.sides.filter((/** @type {Side} */ s) => s.curve.length > 1);
  if (!drawn.length)
    return [];
  const points = drawn.flatMap((/** @type {Side} */ s) => s.curve).filter((/** @type {any} */ p) => p.watts !== null);
  const [width, height, left, top, bottom] = [420, 190, 46, 10, 24];
  const coldest = Math.min(...points.map((/** @type {any} */ p) => p.junctionTemperature));
  const hottest = Math.max(...points.map((/** @type {any} */ p) => p.junctionTemperature));
  const most = Math.max(...points.map((/** @type {any} */ p) => p.watts)) || 1;
  const x = (/** @type {number} */ t) => left + (width - left - 44) * (t - coldest) / (hottest - coldest || 1);
  const y = (/** @type {number} */ w) => top + (height - top - bottom) * (1 - w / most);
  const space = 'http://www.w3.org/2000/svg';
  const shape = (/** @type {string} */ tag, /** @type {Record<string, string>} */ attributes, text = '') => {
    const node = document.createElementNS(space, tag);
    for (const [name, value] of Object.entries(attributes))
      node.setAttribute(name, value);
    node.textContent = text;
    return node;
  };
  const words = drawn.map((/** @type {Side} */ s) => `${s.process} ${runsAway(s) ? 'runs away' : `${si(s.totalWatts, 'W')} at ${degrees(s.junctionTemperature)}`}`).join('; ');
  const svg = shape('svg', { viewBox: `0 0 ${width} ${height}`, role: 'img', 'aria-label': `Power over junction temperature: ${words}`, style: 'width:100%;max-width:560px' });
  svg.append(shape('path', { class: 'axis', fill: 'none', d: `M${left} ${top}V${height - bottom}H${width - 40}` }));
  for (let i = 0; i <= 2; ++i) {
    svg.append(shape('text', { x: String(left - 5), y: String(y(most * i / 2) + 4), 'text-anchor': 'end' }, si(most * i / 2, 'W')),
      shape('text', { x: String(x(coldest + (hottest - coldest) * i / 2)), y: String(height - 8), 'text-anchor': 'middle' }, minus((coldest + (hottest - coldest) * i / 2).toFixed(0)) + ' °C'));
  }
  drawn.forEach((/** @type {Side} */ s, /** @type {number} */ i) => {
    const way = s.curve.filter((/** @type {any} */ p) => p.watts !== null);
    const last = way[way.length - 1];
    svg.append(shape('polyline', { fill: 'none', style: `stroke:var(--${i ? 'dynamic' : 'static'});stroke-width:2${i ? ';stroke-dasharray:6 3' : ''}`, points: way.map((/** @type {any} */ p) => `${x(p.junctionTemperature).toFixed(1)},${y(p.watts).toFixed(1)}`).join(' ') }));
    if (last)
      svg.append(shape('text', { x: String(x(last.junctionTemperature) + 5), y: String(y(last.watts) + 10) }, s.process));
    if (!runsAway(s) && s.junctionTemperature >= coldest && s.junctionTemperature <= hottest)
      svg.append(shape('circle', { cx: x(s.junctionTemperature).toFixed(1), cy: y(Math.min(most, s.totalWatts)).toFixed(1), r: '4', style: `fill:var(--${i ? 'dynamic' : 'static'})` }));
  });
  return [section('Power over junction temperature', svg, element('p', { class: 'soft' }, words + '.'))];
}

/** @param {Estimate} data */
function modes(data) {
  if (!data.period)
    return [];
  return [section('Modes', table('On average over the period, and at the highest junction', ['Process', 'Power', 'Peak junction', 'Settles'],
    data.period.sides.map((/** @type {any} */ s) => [s.process, si(s.watts, 'W'), degrees(s.highest?.junctionTemperature), s.settles ? 'yes' : 'no'])))];
}

/** @param {Estimate} data */
function warnings(data) {
  return data.warnings.length ? [section('Warnings', element('div', { class: 'verdict mark' }, element('ul', {}, ...data.warnings.slice(0, kAtOnce).map((/** @type {string} */ w) => element('li', {}, w)),
    ...(data.warnings.length > kAtOnce ? [element('li', {}, `and ${data.warnings.length - kAtOnce} more`)] : []))))] : [];
}

/** @param {Estimate} data */
function provenance(data) {
  return section('Data', element('details', {}, element('summary', {}, `zelm ${data.version}, ${data.dataFiles.length} data files with their SHA-256`),
    table('Data files', ['File', 'SHA-256'], data.dataFiles.map((/** @type {any} */ f) => [f.name, element('code', {}, f.sha256)]))));
}

/** @type {WeakMap<Element, string>} as which sections have been drawn */
const drawn = new WeakMap();

/**
 * Sections take the place of those that look different; the others stay, with what people have opened in them.
 * @param {HTMLElement} box
 * @param {HTMLElement[]} sections
 */
function patch(box, sections) {
  const old = [...box.children];
  const next = sections.map(section => {
    const markup = section.outerHTML;
    const same = old.find(one => drawn.get(one) === markup);
    if (!same)
      drawn.set(section, markup);
    return same || section;
  });
  for (const one of old) {
    if (!next.includes(/** @type {HTMLElement} */ (one)))
      one.remove();
  }
  next.forEach((section, i) => {
    if (box.children[i] !== section)
      box.insertBefore(section, box.children[i] || null);
  });
}

/**
 * The results beside the design.
 * @param {HTMLElement} root
 * @param {Estimate} data
 * @param {Estimate} first of the design as it came
 * @param {string} problem why these are not those of the design; empty if they are
 */
export function showResults(root, data, first, problem) {
  let box = /** @type {HTMLElement | null} */ (root.querySelector(':scope > .drawn-results'));
  if (!box)
    root.replaceChildren(box = element('div', { class: 'drawn-results' }));
  const at = document.activeElement instanceof HTMLElement && root.contains(document.activeElement) ? document.activeElement.dataset.why : undefined;
  box.classList.toggle('stale', Boolean(problem));
  patch(box, data ? [element('h2', { class: 'unseen' }, 'Totals'), verdict(data), sides(data, first), ...warnings(data), ...budgets(data), ...rails(data, first), ...blocks(data), ...groups(data), ...curve(data), ...modes(data), ...utilisation(data), provenance(data)] : []);
  root.querySelector(':scope > .problem')?.remove();
  if (problem)
    box.before(element('div', { class: 'problem verdict bad', role: 'alert' }, element('p', {}, element('strong', {}, '✗ No estimate: '), problem), ...(data ? [element('p', { class: 'soft' }, 'Below is the last one that there was.')] : [])));
  // Where the keyboard was.
  if (at && !root.contains(document.activeElement))
    [.../** @type {NodeListOf<HTMLElement>} */ (root.querySelectorAll('[data-why]'))].find(one => one.dataset.why === at)?.focus();
  markSoon(root);
}

let marking = 0;

/** @param {HTMLElement} root */
export function markSoon(root) {
  clearTimeout(marking);
  marking = setTimeout(() => markScrolling(root), 300);
}

/**
 * What scrolls sideways is a stop for the keyboard.
 * @param {HTMLElement} root
 */
function markScrolling(root) {
  for (const node of root.querySelectorAll('.scroll')) {
    const scrolls = node.scrollWidth > node.clientWidth + 1;
    for (const [name, value] of [['tabindex', '0'], ['role', 'region'], ['aria-label', `${node.querySelector('caption')?.textContent}, scrolls sideways`]]) {
      if (scrolls)
        node.setAttribute(name, value);
      else
        node.removeAttribute(name);
    }
  }
}

/**
 * One line for small screens.
 * @param {Estimate} data
 * @param {string} problem
 */
export function glance(data, problem) {
  if (problem || !data)
    return '✗ ' + (problem || 'No estimate');
  const broken = data.budgets.filter((/** @type {any} */ b) => b.broken).length;
  return data.sides.map((/** @type {Side} */ s) => runsAway(s) ? `${s.process} runaway` : `${s.process} ${si(s.totalWatts, 'W')}${s.process ? ' ' + degrees(s.junctionTemperature) : ''}`).join(' · ') + (broken ? ` · ✗ ${broken} broken` : data.budgets.length ? ' · ✓ kept' : '');
}
