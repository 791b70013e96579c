/** @param {string} text */
export const minus = text => text.replace('-', '−');

/** @type {[number, string][]} */
const prefixes = [[1, ''], [1e-3, 'm'], [1e-6, 'µ'], [1e-9, 'n'], [1e-12, 'p']];

/**
 * Four digits with a prefix, as the tool's reports have it.
 * @param {number | null | undefined} value
 * @param {string} unit
 */
export function si(value, unit) {
  if (value === null || value === undefined)
    return 'none';
  const size = Math.abs(value);
  const [factor, sign] = (size === 0 ? prefixes[0] : prefixes.find(([f]) => size >= 0.99995 * f)) || prefixes[4];
  const scaled = value / factor;
  const s = Math.abs(scaled);
  return minus(scaled.toFixed(s >= 99.995 ? 1 : s >= 9.9995 ? 2 : 3)) + '\u00a0' + sign + unit;
}

/** @param {number | null | undefined} value */
export const degrees = value => value === null || value === undefined ? 'none' : minus(value.toFixed(2)) + '\u00a0°C';

/** @param {number} part @param {number | null | undefined} all */
export const percent = (part, all) => all && all > 0 ? (100 * part / all).toFixed(1) + '\u00a0%' : '';

/**
 * What a change comes to, with its sign; empty if there is none.
 * @param {number | null | undefined} now
 * @param {number | null | undefined} before
 * @param {(value: number) => string} shown
 */
export function change(now, before, shown) {
  if (now === null || now === undefined || before === null || before === undefined || now === before)
    return '';
  return (now > before ? '+' : '−') + shown(Math.abs(now - before));
}
