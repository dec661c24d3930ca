// SPDX-License-Identifier: MIT
/*
 * Draws trees of elements. `h` describes an element. `draw` makes a parent's children match their descriptions and
 * changes only what differs, so that focus, selection and scroll positions stay. Texts are never parsed as markup.
 */

/**
 * Null, undefined and booleans draw nothing.
 * @typedef {string | number | boolean | null | undefined | Description | Children} Child
 */
/** @typedef {{[Symbol.iterator](): Iterator<Child>, map: any}} Children  a list of children */
/** @typedef {{[name: string]: any, key?: string | number}} Properties */
/** @typedef {{tag: string, key?: string | number, properties: Properties, children: (string | Description)[]}} Description */

const svg = 'http://www.w3.org/2000/svg'
const svgTags = new Set(['svg', 'path', 'rect', 'circle', 'line', 'g'])

/** The last description of each element. @type {WeakMap<Node, Description>} */
const drawn = new WeakMap()

/**
 * Describes an element. The properties are
 * - `key`, which identifies it among its siblings when they change places;
 * - `onclick` and the like, which are listeners;
 * - `class`, a text, or a list whose texts are joined; other items of the list are ignored;
 * - `style`, an object of CSS properties, including custom ones;
 * - any others: functions and objects, and `value`, `checked`, `selected` and `indeterminate`, are set as properties,
 *   all others as attributes. The values false, null and undefined remove an attribute.
 * @param {string} tag @param {Properties?} [properties] @param {...Child} children @return {Description}
 */
export function h(tag, properties, ...children) {
  const given = properties ?? {}
  return {tag, key: given.key, properties: given, children: flat(children)}
}

/** Makes the children of an element match their descriptions. @param {Element} parent @param {...Child} children */
export function draw(parent, ...children) {
  drawChildren(parent, flat(children))
}

/** @param {Child[]} children @return {(string | Description)[]} */
function flat(children) {
  /** @type {(string | Description)[]} */
  const all = []
  for (const child of children) {
    if (child === null || child === undefined || typeof child === 'boolean') continue
    if (Array.isArray(child)) all.push(...flat(child))
    else if (typeof child === 'object') all.push(/** @type {Description} */ (child))
    else all.push(String(child))
  }
  return all
}

/** @param {Element} parent @param {(string | Description)[]} children */
function drawChildren(parent, children) {
  /** @type {Map<string | number, ChildNode>} */
  const keyed = new Map()
  const wanted = new Set(children.map(child => typeof child === 'string' ? undefined : child.key))
  for (const node of [...parent.childNodes]) {
    const key = drawn.get(node)?.key
    if (key === undefined) continue
    // Remove nodes first: moving a sibling past them would lose its focus.
    if (wanted.has(key)) keyed.set(key, node)
    else node.remove()
  }
  /** @type {ChildNode | null} */
  let at = parent.firstChild
  for (const child of children) {
    const node = siblingOf(child, keyed)
    if (node && node !== at) parent.insertBefore(node, at)
    const made = drawChild(node ?? at, child)
    if (made === at || made === node) at = made.nextSibling
    else parent.insertBefore(made, at)
  }
  while (at) {
    const next = at.nextSibling
    at.remove()
    at = next
  }
}

/**
 * The existing node of a child, at any position.
 * @param {string | Description} child
 * @param {Map<string | number, ChildNode>} keyed
 */
function siblingOf(child, keyed) {
  if (typeof child === 'string' || child.key === undefined) return undefined
  const node = keyed.get(child.key)
  return node && drawn.get(node)?.tag === child.tag ? node : undefined
}

/**
 * Changes a node to match a description if possible; otherwise creates a new one.
 * @param {ChildNode | null | undefined} node @param {string | Description} child @return {ChildNode}
 */
function drawChild(node, child) {
  if (typeof child === 'string') {
    if (!(node instanceof Text)) return document.createTextNode(child)
    if (node.data !== child) node.data = child
    return node
  }
  const before = node && drawn.get(node)
  const isSame = before && before.tag === child.tag && before.key === child.key
  const element = isSame ? /** @type {Element} */ (node) : make(child.tag)
  const last = isSame ? before.properties : {}
  drawn.set(element, child)
  for (const name of Object.keys(last)) if (!(name in child.properties)) setProperty(element, name, undefined, last[name])
  // Draw children first, since the value of a <select> needs its options. Custom elements draw their own children.
  if (!child.tag.includes('-')) drawChildren(element, child.children)
  for (const [name, value] of Object.entries(child.properties)) setProperty(element, name, value, last[name])
  return /** @type {ChildNode} */ (/** @type {Node} */ (element))
}

/** @param {string} tag */
function make(tag) {
  return svgTags.has(tag) ? document.createElementNS(svg, tag) : document.createElement(tag)
}

/** @param {any} element @param {string} name @param {any} value @param {any} before  the value in the last description */
function setProperty(element, name, value, before) {
  if (name === 'key') return
  if (name === 'class') value = Array.isArray(value) ? value.filter(part => typeof part === 'string').join(' ') : value
  if (name === 'style') return setStyle(element, value ?? {}, before ?? {})
  if (name === 'value' || name === 'checked' || name === 'selected' || name === 'indeterminate') {
    // Keep what a person has typed until the description changes.
    if (element[name] !== value && before !== value) element[name] = value ?? ''
    return
  }
  if (value === before) return
  const isProperty = typeof value === 'function' || typeof before === 'function' || (typeof value === 'object' && value !== null && name !== 'class')
  if (isProperty) element[name] = value ?? null
  else if (value === undefined || value === null || value === false) element.removeAttribute(name)
  else element.setAttribute(name, value === true ? '' : String(value))
}

/** @param {HTMLElement} element @param {{[name: string]: any}} style @param {{[name: string]: any}} before */
function setStyle(element, style, before) {
  for (const name of Object.keys(before)) if (!(name in style)) element.style.removeProperty(name)
  for (const [name, value] of Object.entries(style)) {
    if (before[name] !== value) element.style.setProperty(name, String(value))
  }
}
