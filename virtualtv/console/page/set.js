// SPDX-License-Identifier: MIT
import {attempt} from './attempt.js'
import {h} from './dom.js'
import './knobs.js'
import {antennaName, countryName, regionName, sourceOf, tvModeOf, tvModes} from './numbers.js'
import {Part} from './part.js'
import {troubleOf} from './reply.js'
import './set-keeping.js'
import './settings.js'
import {store} from './store.js'
import {main, onWindow} from './windows.js'

/** The set itself: its region, how it starts, all its knobs and settings, and saving it. */
class TheSet extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['state'])
  /** Why a value was refused, by the name of its field. @type {{[name: string]: string | undefined}} */
  #refused = {}

  view() {
    const state = store.get('state')
    if (!state) return h('p', {class: 'empty'}, 'The set appears here once the TV is connected.')
    return h('div', {class: 'pane-body set'},
      this.#mode(state.windows.main.tvMode),
      this.#number('Region', 'region', state.region, regionName(state.region)),
      this.#number('Country', 'country', state.country, countryName(state.country)),
      this.#fade(state.tuner.fade),
      this.#isp(state.isp),
      this.#number('Start service', 'start.service', state.start.service ?? 0, 'a service id; 0 for none'),
      this.#number('Start source', 'start.source', state.start.source, startName(state.start.source)),
      h('emp-set-keeping', {key: 'keeping'}),
      h('emp-knobs', {key: 'knobs'}),
      h('emp-settings', {key: 'settings'}))
  }

  /** @param {{antenna: number, service: number}} mode */
  #mode(mode) {
    const now = String(tvModeOf(mode))
    return this.#line('mode', 'TV mode', h('select', {'aria-label': 'TV mode of the main window', value: now, onchange: async (/** @type {Event} */ event) => {
      const field = /** @type {HTMLSelectElement} */ (event.target)
      const [reply] = await onWindow(main, ['SetTVMode', Number(field.value)])
      this.#tell('mode', troubleOf('SetTVMode', reply))
      if (this.#refused.mode) field.value = now
    }}, tvModes.map(([label, modes]) => h('optgroup', {label: /** @type {string} */ (label)},
      /** @type {[number, string][]} */ (modes).map(([number, name]) => h('option', {value: String(number)}, `${number} ${name}`)))),
    now === '0' && h('option', {value: '0'}, '0 unknown')),
    `${mode.antenna},${mode.service} ${antennaName(mode.antenna)}, service list ${mode.service}`)
  }

  /** @param {string} label @param {string} knob @param {number | string} value @param {string} meaning */
  #number(label, knob, value, meaning) {
    return this.#line(knob, label, h('input', {'aria-label': label, value: String(value), size: 6, onchange: (/** @type {Event} */ event) => this.#set(knob, event)}), meaning)
  }

  /** @param {number} fade */
  #fade(fade) {
    return this.#line('tuner.fade', 'Tuner fade', h('input', {type: 'range', 'aria-label': 'Tuner fade', min: 0, max: 255, value: String(fade),
      onchange: (/** @type {Event} */ event) => this.#set('tuner.fade', event)}), `${fade} of 255 lost${fade === 0 ? ': the whole signal comes in' : fade === 255 ? ': no signal is left' : ''}`)
  }

  /** @param {{present: boolean, shown: boolean}} isp */
  #isp({present, shown}) {
    return this.#line('isp.present', 'ISP', h('button', {role: 'switch', 'aria-checked': String(present), 'aria-label': 'ISP',
      class: present ? 'is-on' : null, onclick: async () => this.#tell('isp.present', await attempt('tv.set', {name: 'isp.present', value: present ? 'off' : 'on'}))}, present ? 'on' : 'off'),
    present ? `the second TV stack can be reached, and ${shown ? 'shows its source' : 'shows nothing'}` : 'the second TV stack can\'t be reached')
  }

  /** @param {string} name @param {string} label @param {import('./dom.js').Child} field @param {string} meaning */
  #line(name, label, field, meaning) {
    const refused = this.#refused[name]
    return h('div', {key: name, class: 'set-line'}, h('span', null, label), field,
      refused ? h('span', {class: 'fail', role: 'alert'}, refused) : h('span', {class: 'dim name'}, meaning))
  }

  /** @param {string} name @param {Event} event  of its field */
  async #set(name, event) {
    this.#tell(name, await attempt('tv.set', {name, value: /** @type {HTMLInputElement} */ (event.target).value}))
  }

  /** @param {string} name @param {string | undefined} refused */
  #tell(name, refused) {
    this.#refused = {...this.#refused, [name]: refused}
    this.changed()
  }
}
customElements.define('emp-set', TheSet)

/** @param {number} number  the TV service's */
function startName(number) {
  const source = sourceOf(number)
  return source ? `${source.name}, ${source.plugin} for commands` : 'no input of the set'
}
