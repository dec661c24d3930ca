// SPDX-License-Identifier: MIT
import {draw, h} from './dom.js'
import {appSpace, beyond, beyondText, rectText} from './geometry.js'
import './frame.js'
import './picture.js'
import {appDepth, depth, orderText, placed} from './plane.js'

/** @typedef {import('./plane.js').Shown} Shown */

/**
 * The app's space with the planes at their places, the app's own layer between them, and a margin that shows parts
 * outside the space. An app runs in a frame of 960 x 540, in the element of class `app-layer`, which is never replaced.
 */
export class Stage extends HTMLElement {
  /**
   * Called with the position of the pointer in the app's space; null if there is none.
   * @type {(at: {x: number, y: number, isByKeys: boolean} | null) => void}
   */
  onpoint = () => {}
  /** The crosshair that arrow keys move, in the app's space. @type {{x: number, y: number} | null} */
  #cross = null
  #frame = document.createElement('div')
  #planes = document.createElement('div')
  #app = document.createElement('div')
  #appFrame = document.createElement('emp-app-frame')
  #marks = document.createElement('div')
  /** @type {Shown[]} */
  #all = []
  #observer = new ResizeObserver(() => this.#app.style.setProperty('transform', `scale(${this.#frame.clientWidth / appSpace.width})`))

  connectedCallback() {
    this.#frame.className = 'frame'
    this.#planes.className = 'layer'
    this.#app.className = 'app-layer'
    this.#app.style.zIndex = String(appDepth)
    this.#marks.className = 'marks'
    this.#app.append(this.#appFrame)
    this.#frame.append(this.#planes, this.#app, this.#marks)
    this.append(this.#frame)
    this.#observer.observe(this.#frame)
    this.addEventListener('pointermove', this.#pointed)
    this.addEventListener('pointerdown', this.#pressed)
    this.addEventListener('pointerleave', () => this.onpoint(null))
    this.addEventListener('keydown', this.#typed)
    this.addEventListener('focusout', () => this.#moveCross(null))
  }

  disconnectedCallback() {
    this.#observer.disconnect()
  }

  /** Shows planes. @param {{all: Shown[], isFrozen: boolean}} what */
  set what({all, isFrozen}) {
    this.#all = all
    draw(this.#planes,
      h('div', {key: 'space', class: 'space', role: 'img', 'aria-label': 'App space', 'aria-description': '960 x 540. Arrow keys move a crosshair, with Shift by 10.', tabindex: 0}),
      all.map(shown => [this.#picture(shown, isFrozen), this.#plane(shown)]))
    this.#drawMarks()
  }

  /** @param {Shown} shown @param {boolean} isFrozen */
  #picture(shown, isFrozen) {
    const style = shown.seen ? {...placed(shown.seen), 'z-index': depth(shown)} : {display: 'none'}
    return h('emp-picture', {key: `picture-${shown.id}`, style, what: {shown, isFrozen}})
  }

  /** The box of a plane, for its outline and its position. @param {Shown} shown */
  #plane(shown) {
    const {id, name, card, plane, display} = shown
    const isBeyond = beyond(plane.app.display, appSpace).length > 0
    return h('div', {
      key: `plane-${id}`, role: 'img', 'aria-label': name, 'aria-description': describe(shown), style: {...placed(display), 'z-index': depth(shown)},
      class: ['plane', plane.muted && 'is-hidden', !card && 'is-empty', isBeyond && 'is-beyond'],
    }, plane.muted && card && h('span', null, `${id} hidden`))
  }

  /** Draws what is above everything: the crosshair, and arrows to planes outside. */
  #drawMarks() {
    draw(this.#marks,
      this.#all.map(shown => arrowTo(shown)),
      this.#cross && h('div', {key: 'across', class: 'cross-across', style: {top: `${(this.#cross.y + 0.5) / appSpace.height * 100}%`}}),
      this.#cross && h('div', {key: 'down', class: 'cross-down', style: {left: `${(this.#cross.x + 0.5) / appSpace.width * 100}%`}}))
  }

  /** @param {PointerEvent} event */
  #pointed = event => {
    const {left, top, width} = this.#frame.getBoundingClientRect()
    const scale = appSpace.width / width
    this.onpoint({x: Math.floor((event.clientX - left) * scale), y: Math.floor((event.clientY - top) * scale), isByKeys: false})
  }

  #pressed = () => {
    /** @type {HTMLElement} */ (this.#planes.querySelector('.space')).focus()
  }

  /** @param {KeyboardEvent} event */
  #typed = event => {
    /** @type {{[key: string]: number[]}} */
    const keys = {ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1]}
    const step = keys[event.key]
    if (!step || event.ctrlKey || event.altKey || event.metaKey) return
    event.preventDefault()
    event.stopPropagation()
    const {x, y} = this.#cross ?? {x: appSpace.width / 2, y: appSpace.height / 2}
    const by = event.shiftKey ? 10 : 1
    this.#moveCross({x: clamp(x + step[0] * by, appSpace.width), y: clamp(y + step[1] * by, appSpace.height)})
  }

  /** @param {{x: number, y: number} | null} cross */
  #moveCross(cross) {
    if (cross === this.#cross) return
    this.#cross = cross
    this.#drawMarks()
    this.onpoint(cross && {...cross, isByKeys: true})
  }
}
customElements.define('emp-stage', Stage)

/** @param {number} at @param {number} length */
const clamp = (at, length) => Math.max(0, Math.min(length - 1, at))

/** @param {Shown} shown */
function describe({label, plane, display}) {
  const {rect} = plane.app
  const place = plane.app.display
  const parts = [label, `at ${rectText(place)}`, orderText(plane.order), plane.muted && 'hidden', beyondText(place, appSpace)]
  if (plane.crop) parts.push(`cropped to ${rectText(plane.crop)}`, rectText(place) !== rectText(rect) && `placed at ${rectText(rect)}`)
  return [...parts, `base ${rectText(display)}`].filter(Boolean).join(', ')
}

/** An arrow at the edge beyond which a whole plane lies, with the distance in the app's space. @param {Shown} shown */
function arrowTo({id, plane}) {
  const {display} = plane.app
  const outside = beyond(display, appSpace).filter(({isWhole}) => isWhole)
  if (outside.length === 0) return null
  const signs = {left: '\u2190', right: '\u2192', upper: '\u2191', lower: '\u2193'}
  const at = (/** @type {number} */ middle, /** @type {number} */ length) => `${Math.max(0, Math.min(100, middle / length * 100))}%`
  const left = at(display.x + display.width / 2, appSpace.width)
  const top = at(display.y + display.height / 2, appSpace.height)
  return h('div', {key: `arrow-${id}`, class: 'arrow', style: {left, top, transform: `translate(-${left}, -${top})`}},
    `${id} `, outside.map(({edge, by}) => `${signs[/** @type {keyof typeof signs} */ (edge)]} ${by} px`).join(' '))
}
