// SPDX-License-Identifier: MIT
import {attempt} from './attempt.js'
import {h} from './dom.js'
import {sourceOf} from './numbers.js'
import {Part} from './part.js'
import {pictureText} from './plane.js'
import {show} from './remote-deeds.js'
import {store} from './store.js'

const isp = 48  // the plug-in's number of the ISP source

/** The inputs: what is plugged in, the pictures, and the input on the main window. */
class Inputs extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['state'])
  /** The input whose picture is being changed: the TV service's number. @type {number | undefined} */
  #open
  /** @type {string | undefined} */
  #refused

  view() {
    const state = store.get('state')
    if (!state) return h('p', {class: 'empty'}, 'Inputs appear here once the TV is connected.')
    return h('div', {class: 'inputs'},
      state.inputs.map((/** @type {any} */ input) => [this.#row(input, state.windows.main.source.number), input.source === this.#open && this.#form(input)]),
      this.#ispRow(state.isp),
      this.#open === undefined && this.#refused && h('p', {class: 'fail'}, this.#refused))
  }

  /** @param {any} input @param {number} shown */
  #row({source, name, plugged, picture}, shown) {
    const known = sourceOf(source)
    const number = known?.plugin
    const canBeShown = known?.canBeShown ?? false
    const size = pictureText(picture)
    return h('div', {key: source, class: 'input-row'},
      this.#switch(name, plugged, on => this.#set(`input.${source}.plugged`, on ? 'on' : 'off')),
      h('button', {class: 'plain input-name', disabled: !canBeShown, 'aria-pressed': String(source === shown),
        title: canBeShown ? `Show ${name} on the main window: SetSource ${number}` : `${name} is only reported: no command switches to it`,
        onclick: () => show(number ?? 0, name)}, h('code', {class: 'dim'}, String(number ?? '')), h('bdi', {class: 'name cut'}, name)),
      h('button', {class: 'plain mono', 'aria-label': `Picture of ${name}: ${size}`, 'aria-expanded': String(source === this.#open),
        title: `${size}: ${picture.width} x ${picture.height} pixels, ${picture.rate} frames a second, ${picture.shape}. Click to change.`,
        onclick: () => this.#show(source === this.#open ? undefined : source)}, size))
  }

  /** @param {any} state  of the ISP source */
  #ispRow({present, shown, picture}) {
    return h('div', {key: 'isp', class: 'input-row'},
      this.#switch('ISP source', present, on => this.#set('isp.present', on ? 'on' : 'off')),
      h('button', {class: 'plain input-name', 'aria-pressed': String(shown), title: `Show the source of the secondary TV stack: SetSource ${isp}`,
        onclick: () => show(isp, 'ISP source')}, h('code', {class: 'dim'}, isp), h('span', {class: 'cut'}, 'ISP')),
      h('span', {class: 'mono dim', title: 'Its size is the knob isp.picture'}, `${picture.width}x${picture.height}`))
  }

  /** @param {string} name @param {boolean} on @param {(on: boolean) => void} set */
  #switch(name, on, set) {
    return h('button', {class: ['plain', 'plug', on && 'is-on'], role: 'switch', 'aria-checked': String(on), 'aria-label': `${name} plugged in`,
      title: on ? `${name} is plugged in. Click to unplug.` : `${name} is not plugged in. Click to plug in.`, onclick: () => set(!on)}, on ? '●' : '○')
  }

  /** @param {any} input */
  #form({source, name, picture}) {
    const field = (/** @type {string} */ label, /** @type {'width' | 'height' | 'rate'} */ property) =>
      h('input', {name: property, 'aria-label': label, inputmode: 'numeric', value: String(picture[property])})
    return h('form', {key: `form-${source}`, class: 'input-form', 'aria-label': `Picture of ${name}`, onsubmit: (/** @type {Event} */ event) => this.#submit(event, source)},
      h('div', {class: 'input-fields'}, field('Width', 'width'), 'x', field('Height', 'height'), '@', field('Rate', 'rate'), h('button', null, 'Set')),
      h('p', {class: 'dim'}, `${picture.shape}, the input's own shape`),
      this.#refused && h('p', {class: 'fail', role: 'alert'}, this.#refused))
  }

  /** @param {number | undefined} source */
  #show(source) {
    this.#open = source
    this.#refused = undefined
    this.redraw()
    this.querySelector('form')?.scrollIntoView({block: 'nearest'})
    this.querySelector('input')?.focus({preventScroll: true})
  }

  /** @param {Event} event @param {number} source */
  async #submit(event, source) {
    event.preventDefault()
    const data = new FormData(/** @type {HTMLFormElement} */ (event.target))
    await this.#set(`input.${source}.picture`, `${data.get('width')}x${data.get('height')}@${data.get('rate')}`)
    if (!this.#refused) this.#show(undefined)
  }

  /** @param {string} name @param {string} value */
  async #set(name, value) {
    this.#refused = await attempt('tv.set', {name, value})
    this.changed()
  }
}
customElements.define('emp-inputs', Inputs)
