// SPDX-License-Identifier: MIT
import {draw, h} from './dom.js'
import './export-dialog.js'
import './list.js'
import {Part} from './part.js'
import {onFrame, store} from './store.js'
import './timeline-bar.js'
import './timeline-detail.js'
import {TimelineFilter} from './timeline-filter.js'
import {timeline} from './timeline-log.js'
import {row} from './timeline-row.js'

/** @typedef {import('./timeline-log.js').Entry} Entry */

/** The timeline: commands of all clients, and changes of the set from outside. */
class Timeline extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['timeline', 'commands', 'past'])
  #filter = new TimelineFilter(timeline)
  /** @type {Entry | null} */
  #chosen = null
  /** The other end of the selected entries. @type {Entry | null} */
  #anchor = null
  #isWorking = false
  #offered = ''

  connectedCallback() {
    super.connectedCallback()
    document.addEventListener('keydown', this.#escaped)
  }

  disconnectedCallback() {
    super.disconnectedCallback()
    document.removeEventListener('keydown', this.#escaped)
  }

  view() {
    return [
      h('emp-timeline-bar', {onwanted: this.#want, onexport: this.#export}),
      h('div', {class: 'timeline-body'},
        h('div', {class: 'timeline-rows'},
          h('emp-long-list', {id: 'timeline-list', ranges: true, 'aria-label': 'Timeline entries', row: this.#row, keyOf: this.#key, onchoose: this.#choose}),
          h('p', {class: 'empty', hidden: true})),
        h('emp-timeline-detail', {hidden: true, onleave: this.#leave})),
      h('emp-export-dialog', null),
    ]
  }

  drawn() {
    if (this.#chosen && !store.get('past') && this.#looksBack) this.#leave()
    this.#work()
  }

  /** True while Screen and Planes show the selected entry. */
  #looksBack = false

  get #list() {
    return /** @type {import('./list.js').LongList} */ (this.querySelector('emp-long-list'))
  }

  #row = (/** @type {number} */ at) => {
    const entry = this.#filter.shown[at]
    return entry && row(entry)
  }

  #key = (/** @type {number} */ at) => this.#filter.shown[at]?.id ?? at

  #want = (/** @type {import('./timeline-filter.js').Wanted} */ wanted) => {
    this.#filter.set(wanted)
    this.#list.toEnd()
    this.#work()
  }

  /** Processes new events, and continues with the next frame if that takes longer. */
  #work() {
    if (this.#isWorking || !this.querySelector('emp-long-list')) return
    const list = this.#list
    const stays = !list.isAtEnd && list.length > 0
    const isDone = this.#filter.work()
    const {shown, dropped} = this.#filter
    list.length = shown.length
    list.chosen = this.#chosen ? positionOf(shown, this.#chosen.id) : -1
    list.anchor = this.#anchor ? positionOf(shown, this.#anchor.id) : -1
    list.redraw()
    if (!stays) list.toEnd()
    else if (dropped > 0) list.scrollTop -= dropped * list.rowHeight
    this.#tell(isDone)
    if (isDone) return
    this.#isWorking = true
    onFrame(() => {
      this.#isWorking = false
      this.#work()
    })
  }

  /** @param {boolean} isDone */
  #tell(isDone) {
    const {shown, wanted} = this.#filter
    const bar = /** @type {import('./timeline-bar.js').TimelineBar} */ (this.querySelector('emp-timeline-bar'))
    const {clients, commands, interfaces} = timeline.seen
    const [from, to] = this.#list.range
    const chosen = to - from > 1 ? `${to - from} chosen, ` : ''
    const count = isDone ? `${chosen}${shown.length} of ${timeline.entries.length}` : bar.count
    const offered = `${clients.size} ${commands.size} ${interfaces.size} ${count}`
    if (offered !== this.#offered) {
      this.#offered = offered
      bar.count = count
      bar.redraw()
    }
    const empty = /** @type {HTMLElement} */ (this.querySelector('.timeline-rows > .empty'))
    empty.hidden = !isDone || shown.length > 0
    if (!empty.hidden) draw(empty, timeline.entries.length > 0 && (wanted.text || wanted.client || wanted.command || wanted.interface || wanted.level || wanted.hidden.length > 0)
      ? 'Nothing matches the filter. Show all, or wait for new lines.'
      : 'Nothing has happened yet. Press a key of the remote control, or run a command.')
  }

  #choose = (/** @type {number} */ at) => {
    const entry = this.#filter.shown[at]
    if (!entry) return
    this.#anchor = this.#filter.shown[this.#list.anchor] ?? null
    this.#tell(!this.#isWorking)
    if (entry === this.#chosen) return
    this.#chosen = entry
    const detail = this.#detail
    detail.hidden = false
    detail.show(entry, isHeld => { this.#looksBack = isHeld })
  }

  get #detail() {
    return /** @type {import('./timeline-detail.js').TimelineDetail} */ (this.querySelector('emp-timeline-detail'))
  }

  /** Back to now. */
  #leave = () => {
    this.#chosen = this.#anchor = null
    this.#looksBack = false
    if (this.#detail.contains(document.activeElement)) this.#list.focus()
    this.#detail.hidden = true
    this.#detail.clear()
    store.set('past', null)
    this.#list.chosen = this.#list.anchor = -1
    this.#list.redraw()
    this.#tell(!this.#isWorking)
  }

  #escaped = (/** @type {KeyboardEvent} */ event) => {
    if (event.key !== 'Escape' || event.defaultPrevented || !this.#chosen || document.querySelector('dialog[open]')) return
    this.#leave()
  }

  #export = () => {
    const dialog = /** @type {import('./export-dialog.js').ExportDialog} */ (this.querySelector('emp-export-dialog'))
    dialog.open(this.#filter, this.#chosen, this.#filter.shown.slice(...this.#list.range))
  }
}
customElements.define('emp-timeline', Timeline)

/** The position of an entry; -1 if it is missing. @param {Entry[]} entries @param {number} id */
function positionOf(entries, id) {
  let [low, high] = [0, entries.length]
  while (low < high) {
    const middle = (low + high) >> 1
    if (entries[middle].id < id) low = middle + 1
    else high = middle
  }
  return entries[low]?.id === id ? low : -1
}
