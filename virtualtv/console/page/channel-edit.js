// SPDX-License-Identifier: MIT
import {act, tv} from './act.js'
import {h} from './dom.js'
import {Part} from './part.js'
import {nameOf, numberOf, shownName} from './services.js'
import {store} from './store.js'

/** The forms that show problems of changes below them. @typedef {'name' | 'number' | 'rest'} Place */

/** Changes one service of the list. */
class ChannelEdit extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['services'])
  /** Called when the person is done, with a message to show. @type {(said: string) => void} */
  onend = () => {}
  /** The service in the set; null if it no longer exists. @type {any} */
  #service
  /** @type {number} */
  #key = 0
  #version = -1
  /** The refused change, with its place and the reason. @type {{at: Place, reason: string} | undefined} */
  #refused
  #isSure = false

  /** Sets the service to edit. @param {any} service  as the list has it */
  set service(service) {
    if (service.key === this.#key) return
    this.#key = service.key
    this.#service = service
    this.#version = store.get('services')
    this.#refused = undefined
    this.#isSure = false
    this.changed()
  }

  view() {
    if (this.#version !== store.get('services')) this.#refresh()
    return h('section', {class: 'channel-panel', 'aria-label': 'Edit channel'},
      h('header', null,
        h('span', {class: 'mono dim'}, this.#service && numberOf(this.#service)), h('span', {class: 'grow channel-name'}, this.#service && nameOf(this.#service.name)),
        h('button', {'aria-label': 'Close the channel', onclick: () => this.onend('')}, 'Close')),
      this.#service ? this.#forms(this.#service) : h('p', {class: 'dim', role: 'status'}, 'This channel is no longer in the list.'))
  }

  /** @param {any} service */
  #forms({key, name, major, hidden, locked}) {
    return [
      h('form', {key: `name ${key}`, class: 'row', 'aria-label': 'Name', onsubmit: (/** @type {SubmitEvent} */ event) => this.#send(event, 'name', 'rename')},
        h('input', {class: 'grow', 'aria-label': 'Name', value: name ?? '', spellcheck: 'false'}), h('button', null, 'Rename')),
      this.#problem('name'),
      h('form', {key: `number ${key}`, class: 'row', 'aria-label': 'Number', onsubmit: (/** @type {SubmitEvent} */ event) => this.#send(event, 'number', 'renumber')},
        h('input', {class: 'number', 'aria-label': 'Number', inputmode: 'numeric', value: String(major ?? '')}),
        h('button', {title: 'Gives it a number that no other channel has'}, 'Renumber'),
        h('button', {type: 'button', title: 'Puts it where that number is; the channels between move by one', onclick: this.#move}, 'Move there')),
      this.#problem('number'),
      h('div', {class: 'row'},
        h('button', {'aria-pressed': String(hidden), title: 'Leaves it out of the set\'s lists', onclick: () => this.#change('rest', 'hide', hidden ? 'off' : 'on')}, 'Hidden'),
        h('button', {'aria-pressed': String(locked), title: 'The set asks for a code', onclick: () => this.#change('rest', 'lock', locked ? 'off' : 'on')}, 'Locked'),
        h('span', {class: 'grow'}),
        h('button', {class: this.#isSure && 'fail', onclick: () => this.#isSure ? this.#remove() : this.#beSure(true), onblur: () => this.#beSure(false)},
          this.#isSure ? 'Remove for good' : 'Remove')),
      this.#problem('rest'),
    ]
  }

  /** @param {Place} place */
  #problem(place) {
    return this.#refused?.at === place && h('p', {key: `problem ${place}`, class: 'fail name', role: 'alert'}, this.#refused.reason)
  }

  /** Fetches the service again, since anybody may have changed it. */
  async #refresh() {
    const version = this.#version = store.get('services')
    const key = this.#key
    try {
      const {services} = await tv().services({key})
      if (key !== this.#key || version !== this.#version) return
      this.#service = services[0] ?? null
      this.changed()
    } catch {
      // The connection broke; the next one reports the services again.
    }
  }

  /** @param {SubmitEvent} event @param {Place} place @param {string} change */
  #send(event, place, change) {
    event.preventDefault()
    this.#change(place, change, valueIn(event))
  }

  #move = (/** @type {MouseEvent} */ event) => {
    this.#change('number', 'move', valueIn(event))
  }

  /** Removing requires a second click on the same button. @param {boolean} isSure */
  #beSure(isSure) {
    this.#isSure = isSure
    this.changed()
  }

  async #remove() {
    const {name} = this.#service
    if (await this.#change('rest', 'remove')) this.onend(`Removed ${shownName(name)}`)
  }

  /** @param {Place} place @param {string} change @param {string} [value] @return {Promise<boolean>} whether it was done */
  async #change(place, change, value) {
    const done = await act('tv.editService', {service: `#${this.#key}`, change, ...value !== undefined && {value}})
    const {data, error} = store.get('deed') ?? {}
    this.#refused = done ? undefined : {at: place, reason: data?.reason ?? error}
    this.#isSure = false
    this.changed()
    return done !== undefined
  }
}
customElements.define('emp-channel-edit', ChannelEdit)

/** The value of a form's field. @param {Event} event */
function valueIn({currentTarget}) {
  return /** @type {HTMLInputElement} */ (/** @type {Element} */ (currentTarget).closest('form')?.querySelector('input')).value.trim()
}
