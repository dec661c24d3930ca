// SPDX-License-Identifier: MIT
import {draw, h} from './dom.js'

/**
 * A list that draws only its visible rows, so that its length costs nothing. All rows have the same height. It is a
 * listbox, or with the attribute `grid` a grid whose cells may contain buttons. Arrow keys, Page Up and Down, Home and
 * End move the selection. With the attribute `ranges` a range of rows can be selected: Shift with these keys or a click
 * moves one end of it.
 */
export class LongList extends HTMLElement {
  /** Height of a row, px. */
  rowHeight = 24
  length = 0
  /** The selected row, -1 for none. */
  chosen = -1
  /** The other end of the selected range; -1 if at most one row is selected. */
  anchor = -1
  /** The content of a row. @type {(at: number) => import('./dom.js').Child} */
  row = () => null
  /** The key of a row, for rows that move. @type {(at: number) => string | number} */
  keyOf = at => at
  /** Called with the first visible row and the row after the last visible one. @type {(from: number, to: number) => void} */
  onrange = () => {}
  /** Called when a row is selected. @type {(at: number) => void} */
  onchoose = () => {}
  /** Called when a row is clicked, or Enter is pressed on it. @type {(at: number) => void} */
  onopen = () => {}
  /** Called for other keys on the selected row. @type {(at: number, event: KeyboardEvent) => void} */
  onkey = () => {}
  #space = document.createElement('div')
  #rows = document.createElement('div')
  #height = 0
  #observer = new ResizeObserver(() => this.#resized())

  connectedCallback() {
    this.tabIndex = 0
    this.setAttribute('role', this.#isGrid ? 'grid' : 'listbox')
    this.#space.className = 'long-list-space'
    this.#rows.className = 'long-list-rows'
    this.#space.append(this.#rows)
    this.append(this.#space)
    this.addEventListener('scroll', this.#scrolled, {passive: true})
    this.addEventListener('keydown', this.#typed)
    this.addEventListener('click', this.#clicked)
    if (this.#hasRanges) {
      this.setAttribute('aria-multiselectable', 'true')
      // Otherwise Shift with a click would also select text.
      this.addEventListener('mousedown', event => event.shiftKey && (event.preventDefault(), this.focus()))
    }
    this.#observer.observe(this)
  }

  disconnectedCallback() {
    this.#observer.disconnect()
  }

  get #isGrid() {
    return this.hasAttribute('grid')
  }

  get #hasRanges() {
    return this.hasAttribute('ranges')
  }

  /** The selected rows: the first, and the one after the last. @return {[number, number]} */
  get range() {
    if (this.chosen < 0) return [0, 0]
    const other = this.anchor < 0 ? this.chosen : this.anchor
    return [Math.min(this.chosen, other), Math.max(this.chosen, other) + 1]
  }

  /** True while the end is visible, so that a growing list can stay at its end. */
  get isAtEnd() {
    return this.scrollTop + this.clientHeight >= this.scrollHeight - this.rowHeight
  }

  toEnd() {
    this.scrollTop = this.scrollHeight
  }

  /** Draws the visible rows. */
  redraw() {
    this.#space.style.height = `${this.length * this.rowHeight}px`
    const from = Math.max(0, Math.floor(this.scrollTop / this.rowHeight) - 2)
    const to = Math.min(this.length, Math.ceil((this.scrollTop + this.clientHeight) / this.rowHeight) + 2)
    if (this.#isGrid) this.setAttribute('aria-rowcount', String(this.length))
    this.onrange(from, to)
    this.#rows.style.transform = `translateY(${from * this.rowHeight}px)`
    draw(this.#rows, Array.from({length: Math.max(0, to - from)}, (_, index) => this.#option(from + index)))
    if (this.chosen >= from && this.chosen < to) this.setAttribute('aria-activedescendant', this.#id(this.chosen))
    else this.removeAttribute('aria-activedescendant')
  }

  /** Selects a row and scrolls to it. @param {number} at @param {boolean} [isFurther]  extends the selection to it */
  choose(at, isFurther = false) {
    this.anchor = !isFurther || !this.#hasRanges ? -1 : this.anchor < 0 ? this.chosen : this.anchor
    this.chosen = Math.max(0, Math.min(at, this.length - 1))
    this.#reveal()
    this.redraw()
    this.onchoose(this.chosen)
  }

  /** Keeps the selected row visible if it was. */
  #resized() {
    const top = this.chosen * this.rowHeight
    const wasSeen = top >= this.scrollTop && top < this.scrollTop + this.#height
    this.#height = this.clientHeight
    if (wasSeen) this.#reveal()
    this.redraw()
  }

  /** Scrolls to the selected row. */
  #reveal() {
    const top = this.chosen * this.rowHeight
    if (top < this.scrollTop) this.scrollTop = top
    const bottom = top + this.rowHeight - this.clientHeight
    if (bottom > this.scrollTop) this.scrollTop = bottom
  }

  /** @param {number} at */
  #id(at) {
    return `${this.id || 'list'}-${this.keyOf(at)}`
  }

  /** @param {number} at @return {import('./dom.js').Child} */
  #option(at) {
    const place = this.#isGrid ? {role: 'row', 'aria-rowindex': at + 1} : {role: 'option', 'aria-setsize': this.length, 'aria-posinset': at + 1}
    return h('div', {
      key: this.keyOf(at), id: this.#id(at), 'data-at': at, ...place,
      'aria-selected': String(at >= this.range[0] && at < this.range[1]), class: ['long-list-row', at === this.chosen && 'is-current'],
      style: {height: `${this.rowHeight}px`},
    }, this.row(at))
  }

  #scrolled = () => this.redraw()

  /** @param {MouseEvent} event */
  #clicked = event => {
    const row = /** @type {Element} */ (event.target).closest('.long-list-row')
    if (!row || /** @type {Element} */ (event.target).closest('button')) return
    this.choose(Number(row.getAttribute('data-at')), event.shiftKey)
    this.onopen(this.chosen)
  }

  /** @param {KeyboardEvent} event */
  #typed = event => {
    if (event.target !== this || event.ctrlKey || event.altKey || event.metaKey || this.length === 0) return
    const page = Math.max(1, Math.floor(this.clientHeight / this.rowHeight) - 1)
    /** @type {{[key: string]: number}} */
    const to = {ArrowDown: this.chosen + 1, ArrowUp: this.chosen - 1, PageDown: this.chosen + page, PageUp: this.chosen - page,
      Home: 0, End: this.length - 1}
    if (event.key in to) this.choose(to[event.key], event.shiftKey)
    else if (event.key === 'Enter' && this.chosen >= 0) this.onopen(this.chosen)
    else return this.chosen >= 0 ? this.onkey(this.chosen, event) : undefined
    event.preventDefault()
    event.stopPropagation()
  }
}
customElements.define('emp-long-list', LongList)
