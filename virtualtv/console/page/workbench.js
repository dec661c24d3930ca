// SPDX-License-Identifier: MIT
import {h} from './dom.js'
import {remember, remembered} from './memory.js'
import {panes} from './panes.js'
import {Part} from './part.js'

/** Movable dividers: the size that each one sets, and how it changes per pixel of a move to the right or down. */
const dividers = {
  left: {label: 'Width of the remote control', property: '--left', grows: 1, least: 150, most: 480},
  right: {label: 'Width of the right pane', property: '--right', grows: -1, least: 220, most: 900},
  below: {label: 'Height of the timeline', property: '--below', grows: -1, least: 80, most: 1200},
  command: {label: 'Width of the command pane', property: '--command', grows: -1, least: 200, most: 1600},
}

const narrow = matchMedia('(max-width: 899px)')

/** @param {string} name */
const idOf = name => name.toLowerCase().replace(' ', '-')

/** The whole page: its head, its panes, its foot. */
export class Workbench extends Part {
  #tab = remembered('tab', 'Channels')
  #sizes = remembered('sizes', {})

  connectedCallback() {
    super.connectedCallback()
    narrow.addEventListener('change', () => this.#show(this.#tab))
    addEventListener('emp-show', event => this.#bring(/** @type {CustomEvent} */ (event).detail.name))
    for (const name of Object.keys(dividers)) if (this.#sizes[name]) this.#resize(/** @type {keyof typeof dividers} */ (name), this.#sizes[name])
  }

  view() {
    this.className = narrow.matches ? 'narrow' : 'wide'
    const tabs = panes.filter(({place}) => narrow.matches ? place !== 'screen' : place === 'right')
    if (!tabs.some(({name}) => name === this.#tab)) this.#tab = tabs[0].name
    /** @param {string} place */
    const at = place => panes.filter(pane => pane.place === place).map(pane => this.#pane(pane, tabs.includes(pane)))
    return [
      h('emp-head', {role: 'banner'}),
      h('main', {class: 'bench'},
        h('div', {key: 'left', class: 'left'}, at('left'), this.#divider('left', 'upright')),
        at('screen'),
        h('div', {key: 'right', class: 'right'}, this.#tabs(tabs), at('right'), this.#divider('right', 'upright')),
        h('div', {key: 'below', class: 'below'}, at('below'), this.#divider('below', 'lying'), this.#divider('command', 'upright'))),
      h('emp-foot', {role: 'contentinfo'}),
    ]
  }

  /** @param {typeof panes[0]} pane @param {boolean} isTab */
  #pane({name, tag, place}, isTab) {
    const id = idOf(name)
    const labels = isTab ? {role: 'tabpanel', 'aria-labelledby': `tab-${id}`} : {role: 'region', 'aria-label': name}
    return h('section', {key: name, id, class: `pane at-${place}`, ...labels, tabindex: -1, hidden: isTab && name !== this.#tab},
      h('h2', {class: place === 'left' && !isTab ? 'pane-title' : 'unseen'}, name),
      h(tag))
  }

  /** @param {typeof panes} tabs */
  #tabs(tabs) {
    return h('div', {key: 'tabs', class: 'tabs', role: 'tablist', 'aria-label': 'Panes', onkeydown: (/** @type {KeyboardEvent} */ event) => this.#typed(event, tabs)},
      tabs.map(({name}) => h('button', {
        key: name, id: `tab-${idOf(name)}`, role: 'tab', 'aria-selected': String(name === this.#tab), 'aria-controls': idOf(name),
        tabindex: name === this.#tab ? 0 : -1, onclick: () => this.#show(name),
      }, name)))
  }

  /** @param {string} name  of the pane */
  #show(name) {
    this.#tab = name
    remember('tab', name)
    this.redraw()
    for (const part of this.querySelectorAll('.pane:not([hidden]) > *')) if (part instanceof Part) part.redraw()
  }

  /** @param {string} name  of the pane, whether it is a tab or not */
  #bring(name) {
    const tab = document.getElementById(`tab-${idOf(name)}`)
    if (tab) this.#show(name)
    document.getElementById(idOf(name))?.focus()
  }

  /** @param {KeyboardEvent} event @param {typeof panes} tabs */
  #typed(event, tabs) {
    const step = {ArrowRight: 1, ArrowLeft: -1}[event.key]
    if (!step) return
    const at = tabs.findIndex(({name}) => name === this.#tab)
    this.#show(tabs[(at + step + tabs.length) % tabs.length].name)
    document.getElementById(`tab-${idOf(this.#tab)}`)?.focus()
    event.preventDefault()
    event.stopPropagation()
  }

  /** @param {keyof typeof dividers} name @param {'upright' | 'lying'} how */
  #divider(name, how) {
    const {label, least, most} = dividers[name]
    return h('div', {
      key: `divider-${name}`, class: `divider ${how}`, role: 'separator', tabindex: 0, 'aria-label': label,
      'aria-orientation': how === 'upright' ? 'vertical' : 'horizontal',
      'aria-valuemin': least, 'aria-valuemax': most, 'aria-valuenow': Math.round(this.#sizes[name] ?? this.#sizeOf(name)),
      onpointerdown: (/** @type {PointerEvent} */ event) => this.#drag(event, name, how),
      onkeydown: (/** @type {KeyboardEvent} */ event) => this.#nudge(event, name, how),
    })
  }

  /** @param {keyof typeof dividers} name  @return {number} the current size, px */
  #sizeOf(name) {
    const pane = this.querySelector(name === 'command' ? '#command' : `.${name}`)
    if (!pane) return dividers[name].least
    const {width, height} = pane.getBoundingClientRect()
    return name === 'below' ? height : width
  }

  /** @param {PointerEvent} event @param {keyof typeof dividers} name @param {string} how */
  #drag(event, name, how) {
    const handle = /** @type {HTMLElement} */ (event.currentTarget)
    const position = (/** @type {PointerEvent} */ at) => how === 'upright' ? at.clientX : at.clientY
    const start = position(event)
    const size = this.#sizeOf(name)
    handle.setPointerCapture(event.pointerId)
    handle.onpointermove = at => this.#resize(name, size + (position(at) - start) * dividers[name].grows)
    handle.onpointerup = handle.onpointercancel = () => {
      handle.onpointermove = null
      remember('sizes', this.#sizes)
    }
    event.preventDefault()
  }

  /** @param {KeyboardEvent} event @param {keyof typeof dividers} name @param {string} how */
  #nudge(event, name, how) {
    /** @type {{[key: string]: number}} */
    const keys = how === 'upright' ? {ArrowRight: 1, ArrowLeft: -1} : {ArrowDown: 1, ArrowUp: -1}
    const step = keys[event.key]
    if (!step) return
    this.#resize(name, this.#sizeOf(name) + step * 16 * dividers[name].grows)
    remember('sizes', this.#sizes)
    this.redraw()
    event.preventDefault()
    event.stopPropagation()
  }

  /** @param {keyof typeof dividers} name @param {number} size  px */
  #resize(name, size) {
    const {property, least, most} = dividers[name]
    this.#sizes[name] = Math.max(least, Math.min(most, size))
    this.style.setProperty(property, `${this.#sizes[name]}px`)
  }
}
customElements.define('emp-workbench', Workbench)
