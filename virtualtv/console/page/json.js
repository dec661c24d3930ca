// SPDX-License-Identifier: MIT
import {draw, h} from './dom.js'
import {copy} from './clipboard.js'
import {front} from './shown.js'

/** @typedef {{path: string, name: string, value: any, level: number}} Line */

let count = 0
const step = 200  // members of a list or an object shown at first

/**
 * A document as a tree whose parts can be folded. Arrow keys move, open and close; Enter or Space opens and closes; C
 * copies the value. The parts named in `marked`, by paths such as `windows.main.source`, are highlighted and visible.
 */
export class JsonTree extends HTMLElement {
  /** @type {any} */
  #value
  /** @type {Set<string>} */
  #marked = new Set()
  /** @type {Set<string>} */
  #open = new Set([''])
  /** The number of members shown, by path. @type {Map<string, number>} */
  #most = new Map()
  /** @type {Line[]} */
  #lines = []
  #at = 0
  #id = `json-${++count}`

  connectedCallback() {
    this.tabIndex = 0
    this.setAttribute('role', 'tree')
    this.onkeydown = event => this.#typed(event)
    this.onclick = event => this.#clicked(event)
    this.#redraw()
  }

  /** @param {any} value @param {Iterable<string>} [marked]  paths */
  show(value, marked = []) {
    this.#value = value
    this.#marked = new Set(marked)
    for (const path of this.#marked) for (const parent of parentsOf(path)) this.#open.add(parent)
    this.#redraw()
  }

  /** Opens all parts with few members. */
  openSmall() {
    const visit = (/** @type {any} */ value, /** @type {string} */ path, /** @type {number} */ level) => {
      if (!isParent(value) || level > 3 || Object.keys(value).length > 30) return
      this.#open.add(path)
      for (const [name, part] of Object.entries(value)) visit(part, join(path, name), level + 1)
    }
    visit(this.#value, '', 0)
    this.#redraw()
  }

  #redraw() {
    if (!this.isConnected || this.#value === undefined) return
    this.#lines = []
    this.#list(this.#value, '', '', 1)
    this.#at = Math.max(0, Math.min(this.#at, this.#lines.length - 1))
    draw(this, this.#lines.map((line, at) => this.#item(line, at)))
    this.setAttribute('aria-activedescendant', `${this.#id}-${this.#at}`)
  }

  /** @param {any} value @param {string} path @param {string} name @param {number} level */
  #list(value, path, name, level) {
    this.#lines.push({path, name, value, level})
    if (!isParent(value) || !this.#open.has(path)) return
    const members = Object.entries(value)
    const most = this.#most.get(path) ?? step
    for (const [key, part] of members.slice(0, most)) this.#list(part, join(path, key), key, level + 1)
    if (members.length > most) this.#lines.push({path: `${path}\0more`, name: `… ${members.length - most} more`, value: undefined, level: level + 1})
  }

  /** @param {Line} line @param {number} at */
  #item({path, name, value, level}, at) {
    const isMore = path.endsWith('\0more')
    const isOpen = this.#open.has(path)
    return h('div', {
      id: `${this.#id}-${at}`, role: 'treeitem', 'aria-level': level, 'data-at': at, class: ['json-line', this.#marked.has(path) && 'changed'],
      'aria-expanded': isParent(value) ? String(isOpen) : null, 'aria-selected': String(at === this.#at), style: {'padding-left': `${level * 12 - 8}px`},
    },
    h('span', {class: 'json-fold', 'aria-hidden': 'true'}, isParent(value) ? (isOpen ? '▾' : '▸') : ''),
    name !== '' && h('span', {class: isMore ? 'dim' : 'json-name'}, front(name, 120)), name !== '' && !isMore && ': ',
    !isMore && (isParent(value) ? h('span', {class: 'dim'}, summaryOf(value)) : h('span', {class: `json-${value === null ? 'null' : typeof value}`}, front(JSON.stringify(value), 500))),
    this.#marked.has(path) && h('span', {class: 'unseen'}, ' changed'))
  }

  /** @param {number} at @param {boolean} [wanted] */
  #toggle(at, wanted) {
    const {path, value} = this.#lines[at]
    if (path.endsWith('\0more')) {
      const parent = path.slice(0, -5)
      this.#most.set(parent, (this.#most.get(parent) ?? step) + step)
    } else if (isParent(value)) {
      if (wanted ?? !this.#open.has(path)) this.#open.add(path)
      else this.#open.delete(path)
    }
    this.#redraw()
  }

  /** @param {MouseEvent} event */
  #clicked(event) {
    const item = /** @type {Element} */ (event.target).closest('[data-at]')
    if (!item || getSelection()?.type === 'Range') return
    this.#at = Number(item.getAttribute('data-at'))
    this.#toggle(this.#at)
  }

  /** @param {KeyboardEvent} event */
  #typed(event) {
    if (event.altKey || event.metaKey) return
    const line = this.#lines[this.#at]
    if (event.key.toLowerCase() === 'c') {
      if (line.value !== undefined && getSelection()?.type !== 'Range') copy(typeof line.value === 'string' ? line.value : JSON.stringify(line.value, null, 2))
      return
    }
    if (event.ctrlKey) return
    const isOpen = this.#open.has(line.path)
    if (event.key === 'ArrowDown') this.#move(this.#at + 1)
    else if (event.key === 'ArrowUp') this.#move(this.#at - 1)
    else if (event.key === 'Home') this.#move(0)
    else if (event.key === 'End') this.#move(this.#lines.length - 1)
    else if (event.key === 'Enter' || event.key === ' ') this.#toggle(this.#at)
    else if (event.key === 'ArrowRight') isParent(line.value) && isOpen ? this.#move(this.#at + 1) : this.#toggle(this.#at, true)
    else if (event.key === 'ArrowLeft') isParent(line.value) && isOpen ? this.#toggle(this.#at, false) : this.#move(this.#parent())
    else return
    event.preventDefault()
    event.stopPropagation()
  }

  #parent() {
    const {level} = this.#lines[this.#at]
    for (let at = this.#at - 1; at >= 0; --at) if (this.#lines[at].level < level) return at
    return this.#at
  }

  /** @param {number} at */
  #move(at) {
    this.#at = Math.max(0, Math.min(at, this.#lines.length - 1))
    this.#redraw()
    this.querySelector(`[data-at="${this.#at}"]`)?.scrollIntoView({block: 'nearest'})
  }
}
customElements.define('emp-json', JsonTree)

/** @param {any} value */
const isParent = value => typeof value === 'object' && value !== null && Object.keys(value).length > 0

/** @param {string} path @param {string} name */
const join = (path, name) => path === '' ? name : `${path}.${name}`

/** @param {string} path @return {string[]} */
function parentsOf(path) {
  const parts = path.split('.')
  return parts.map((_, at) => parts.slice(0, at).join('.'))
}

/** @param {any} value */
function summaryOf(value) {
  const size = Object.keys(value).length
  return Array.isArray(value) ? `[${size}]` : `{${size}}`
}
