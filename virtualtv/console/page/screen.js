// SPDX-License-Identifier: MIT
import {live} from './connection.js'
import {h} from './dom.js'
import {appSpace, has, rectText, toBase} from './geometry.js'
import {Part} from './part.js'
import {kindOf} from './service-kind.js'
import {orderText, pixelAt, planeAt, shownIn, windows} from './plane.js'
import './stage.js'
import {store} from './store.js'

/** @typedef {import('./plane.js').Shown} Shown */

const hint = 'Point at the screen, or press arrow keys on it, to read positions.'

/** The screen of the TV: its planes in the app's space, their content, and a line with the pointer's position. */
class Screen extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['state', 'past', 'services', 'app', 'live', 'sound'])

  /** @type {{x: number, y: number, isByKeys: boolean} | null} */
  #at = null
  /** True while the pointer reads positions instead of operating the app. */
  #isReading = false

  view() {
    const past = store.get('past')
    const state = past?.state ?? store.get('state')
    if (!state) return h('p', {class: 'empty'}, 'The picture appears once the TV is connected.')
    const all = windows.map(window => told(shownIn(state, window, service => kindOf(service, () => this.changed()))))
    return [
      h('div', {class: ['on-screen', past && 'is-past']}, past ? this.#past(past) : [all.filter(({card}) => card).map(caption), live && all[0].recording && soundSwitch()]),
      h('emp-stage', {class: this.#isReading && 'is-reading', what: {all, isFrozen: past !== null}, onpoint: this.#point}),
      h('div', {class: 'reading'},
        h('p', {class: 'position mono grow', 'aria-live': this.#at?.isByKeys ? 'polite' : 'off'}, this.#at ? positionText(this.#at, all) : h('span', {class: 'dim'}, hint)),
        this.#readingSwitch()),
    ]
  }

  /** While an app runs, the pointer belongs to the app, unless the person wants to read positions. */
  #readingSwitch() {
    if (!store.get('app')) {
      this.#isReading = false
      return null
    }
    return h('button', {'aria-pressed': String(this.#isReading), title: 'The pointer reads positions and does not reach the app', onclick: () => {
      this.#isReading = !this.#isReading
      this.changed()
    }}, 'Point past the app')
  }

  /** @param {any} past */
  #past({command, entry}) {
    const {name, parameters = []} = entry?.event ?? {}
    return [
      h('span', {class: 'cut', role: 'status'}, 'State after command ', h('code', null, [command, name, ...parameters].filter(word => word !== undefined).join(' '))),
      h('button', {class: 'main', onclick: this.#toNow}, 'Back to now'),
    ]
  }

  /** Leaves the past state. The button disappears with it, so for keyboard users the focus moves to the screen. */
  #toNow = (/** @type {MouseEvent} */ {detail}) => {
    if (detail === 0) /** @type {HTMLElement | null} */ (this.querySelector('.space'))?.focus()
    store.set('past', null)
  }

  #point = (/** @type {{x: number, y: number, isByKeys: boolean} | null} */ at) => {
    this.#at = at
    this.changed()
  }
}
customElements.define('emp-screen', Screen)

/** Adds to the test card why it replaces the recording. @param {Shown} shown @return {Shown} */
function told(shown) {
  const problem = shown.recording && store.get('live')[shown.id]
  if (!problem || !shown.card) return shown
  const text = `Not played: ${problem}`
  return {...shown, label: `${shown.label}, ${text}`, card: {...shown.card, lines: [text, ...shown.card.lines]}}
}

/** The switch for the sound of a recording. */
function soundSwitch() {
  const isOn = store.get('sound')
  return h('button', {key: 'sound', 'aria-pressed': String(isOn), title: 'Hear the recording on the main window', onclick: () => store.set('sound', !isOn)}, 'Sound')
}

/** Describes the content of a window in one line. @param {Shown} shown */
function caption({id, card, label, plane}) {
  return h('span', {key: id, class: 'cut caption', title: `${label}, ${orderText(plane.order)}`},
    h('span', {class: 'dim'}, `${id} `), h('span', {class: 'name'}, label), plane.muted && h('span', {class: 'dim'}, ', hidden'))
}

/** Reads a position in both spaces. @param {{x: number, y: number}} at  in the app's space @param {Shown[]} all */
function positionText({x, y}, all) {
  const words = [`x ${x} y ${y} app`, `${toBase(x)}, ${toBase(y)} base`]
  if (!has(appSpace, x, y)) return [...words, 'outside of the space'].join(' - ')
  const shown = planeAt(all, toBase(x), toBase(y))
  if (!shown) return [...words, 'no plane'].join(' - ')
  words.push(`plane ${shown.id} ${rectText(shown.plane.app.display)}`)
  const pixel = pixelAt(shown, toBase(x), toBase(y))
  if (pixel) words.push(`pixel ${pixel.x}, ${pixel.y} of ${shown.picture.width}x${shown.picture.height}`)
  else if (shown.picture) words.push('black bar')
  return words.join(' - ')
}
