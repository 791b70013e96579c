/** @typedef {string | Node} Child */

/**
 * An element; what comes from a design goes in as text, never as markup.
 * @param {string} tag
 * @param {Record<string, string | boolean | undefined>} attributes none for false and undefined
 * @param {...Child} children
 * @returns {HTMLElement}
 */
export function element(tag, attributes = {}, ...children) {
  const node = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (value !== undefined && value !== false)
      node.setAttribute(name, value === true ? '' : value);
  }
  node.append(...children);
  return node;
}

/** @param {string} id @returns {HTMLElement} */
export function byId(id) {
  const node = document.getElementById(id);
  if (!node)
    throw new Error(`the page has no ${id}`);
  return node;
}

/**
 * @param {string} text
 * @param {() => void} act
 * @param {Record<string, string | boolean | undefined>} attributes
 */
export function button(text, act, attributes = {}) {
  const node = element('button', { type: 'button', class: 'small', ...attributes }, text);
  node.addEventListener('click', act);
  return node;
}

/**
 * A number that opens how it comes about.
 * @param {string} quantity as `zelm explain` names it
 * @param {string} text
 */
export function why(quantity, text) {
  return element('button', { type: 'button', class: 'why', 'data-why': quantity, 'aria-haspopup': 'dialog', 'aria-label': `${text}, explain ${quantity}`, title: 'How this comes about' }, text);
}

/**
 * Rows below heads; the first cell of each row is its head.
 * @param {string} caption
 * @param {string[]} heads
 * @param {Child[][]} rows
 */
export function table(caption, heads, rows) {
  const drawn = (/** @type {number} */ i) => rows.length && rows[0][i] instanceof HTMLElement && /** @type {HTMLElement} */ (rows[0][i]).className === 'bar' ? 'drawn' : undefined;
  const body = rows.map(cells => element('tr', {}, ...cells.map((cell, i) =>
    i === 0 ? element('th', { scope: 'row' }, cell) : element('td', { class: drawn(i) }, cell))));
  return element('div', { class: 'scroll' }, element('table', {}, element('caption', {}, caption),
    element('thead', {}, element('tr', {}, ...heads.map((head, i) => element('th', { scope: 'col', class: drawn(i) }, head)))),
    element('tbody', {}, ...body)));
}
