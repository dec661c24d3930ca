// SPDX-License-Identifier: MIT
import {act} from './act.js'
import {h} from './dom.js'
import {eachOf, sides, toBase} from './geometry.js'
import {Part} from './part.js'
import {numbersText, windows} from './plane.js'
import {troubleOf} from './reply.js'
import {store} from './store.js'
import {inWindow, main, pip} from './windows.js'

/** @typedef {import('./geometry.js').Rect} Rect */


/** Places, crops, raises and hides the plane of a window: `data-window` names it. */
class PlaneForm extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['state', 'past'])

  #failure = ''
  /** Typed values of the place that differ from the set's. @type {Partial<Rect>} */
  #typed = {}

  /** The window of the form. */
  get #id() {
    return /** @type {string} */ (this.dataset.window)
  }

  view() {
    const state = store.get('state')
    if (!state) return null
    const {plane, picture} = state.windows[this.#id]
    const isPast = store.get('past') !== null
    return [
      h('fieldset', {disabled: isPast},
        h('legend', {class: 'unseen'}, `Change ${this.#name}`),
        this.#placeForm(plane), this.#cropForm(plane, picture), this.#switches(plane)),
      h('p', {class: isPast ? 'dim' : 'fail', role: 'status'}, isPast ? 'This is a past state: go back to now to change anything.' : this.#failure),
    ]
  }

  get #name() {
    return windows.find(window => window.id === this.#id)?.name ?? this.#id
  }

  /** @param {any} plane */
  #placeForm(plane) {
    const rect = {...plane.app.rect, ...this.#typed}
    return h('form', {key: 'place', 'aria-label': `Place of ${this.#name}`, onsubmit: this.#place},
      fields('', plane.app.rect, (side, value) => {
        this.#typed = {...this.#typed, [side]: value}
        this.changed()
      }),
      h('button', {class: 'main', title: 'SetScreenRect'}, 'Place'),
      h('button', {type: 'button', title: 'SetScreenRect -1', onclick: () => this.#do('SetScreenRect', -1, 0, 0, 0)}, 'Default'),
      h('span', {class: 'dim mono'}, rect.x < 0 ? 'x below 0: the default place' : `base ${numbersText(eachOf(rect, toBase))}`))
  }

  /** @param {any} plane @param {any} picture */
  #cropForm(plane, picture) {
    const crop = plane.crop ?? {x: 0, y: 0, width: picture?.width ?? 1920, height: picture?.height ?? 1080}
    return h('details', {key: 'crop'},
      h('summary', null, 'Crop'),
      h('form', {'aria-label': `Crop of ${this.#name}`, onsubmit: this.#crop},
        h('span', {class: 'dim'}, 'Part of the picture, in its pixels'), h('span', {class: 'fields'}, fields('crop ', crop)),
        h('span', {class: 'dim'}, 'Where it is shown, in base pixels'), h('span', {class: 'fields'}, fields('display ', plane.base.display)),
        h('span', {class: 'row'},
          h('button', {class: 'main', title: 'SetScreenCropRect with a parameter list'}, 'Crop'),
          h('button', {type: 'button', disabled: !plane.crop, title: 'SetScreenRect with the place that it has', onclick: () => this.#do('SetScreenRect', ...sides.map(side => plane.app.rect[side]))}, 'End crop'))))
  }

  /** @param {any} plane */
  #switches({order, muted}) {
    const choice = (/** @type {string} */ text, /** @type {boolean} */ isChosen, /** @type {string} */ name, /** @type {number} */ value) =>
      h('button', {title: `${name} ${value}`, 'aria-pressed': String(isChosen), onclick: () => this.#do(name, value)}, text)
    return h('div', {key: 'switches', class: 'row'},
      h('span', {class: 'row', role: 'group', 'aria-label': `Order of ${this.#name}`},
        choice('Behind the app', order === 0, 'SetScreenZorder', 0), choice('In front', order > 1, 'SetScreenZorder', 1)),
      h('span', {class: 'row', role: 'group', 'aria-label': `Hiding of ${this.#name}`},
        choice('Shown', !muted, 'MuteVideo', 0), choice('Hidden', muted, 'MuteVideo', 1)))
  }

  #place = (/** @type {SubmitEvent} */ event) => {
    event.preventDefault()
    this.#typed = {}
    this.#do('SetScreenRect', ...numbersOf(event))
  }

  #crop = (/** @type {SubmitEvent} */ event) => {
    event.preventDefault()
    this.#run('SetScreenCropRect', 'window.executeWithParamList', {name: 'SetScreenCropRect', parameters: numbersOf(event)})
  }

  /** @param {string} name @param {...number} parameters */
  #do(name, ...parameters) {
    return this.#run(name, `window.${name}`, parameters)
  }

  /** @param {string} name @param {string} method @param {any} params */
  async #run(name, method, params) {
    const reply = await inWindow(this.#id === 'pip' ? pip : main, () => act(method, params))
    this.#failure = troubleOf(name, reply) ?? ''
    this.changed()
  }
}
customElements.define('emp-plane-form', PlaneForm)

/** A field for each number of a rectangle. @param {string} prefix  of their names @param {Rect} rect @param {(side: string, value: number) => void} [ontype] */
function fields(prefix, rect, ontype) {
  return sides.map(side => h('label', {key: side}, h('span', {class: 'dim'}, side), h('input', {
    type: 'number', required: true, step: 1, 'aria-label': `${prefix}${side}`, value: String(rect[side]),
    oninput: ontype && ((/** @type {Event} */ event) => ontype(side, Number(/** @type {HTMLInputElement} */ (event.target).value))),
  })))
}

/** The values of a form's fields, in order. @param {SubmitEvent} event */
function numbersOf(event) {
  return Array.from(/** @type {HTMLFormElement} */ (event.currentTarget).querySelectorAll('input'), input => Number(input.value))
}
