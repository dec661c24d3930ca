// SPDX-License-Identifier: MIT
import {h} from './dom.js'
import {copy} from './clipboard.js'
import {appSpace, beyondText, eachOf, sides, toApp, toBase} from './geometry.js'
import {Part} from './part.js'
import './plane-form.js'
import {numbersText, orderText, pictureText, windows} from './plane.js'
import {store} from './store.js'

/** @typedef {import('./geometry.js').Rect} Rect */

/** The details of planes: their rectangles in both spaces, rounding losses between them, and forms to change them. */
class Planes extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['state', 'past'])

  /** The last drawn values. @type {Map<string, string>} */
  #last = new Map()

  view() {
    const state = store.get('past')?.state ?? store.get('state')
    if (!state) return h('p', {class: 'empty'}, 'Planes appear here once the TV is connected.')
    return h('div', {class: 'pane-body planes'},
      windows.map(({id, name}) => h('section', {key: id, 'aria-label': name}, h('h3', null, `${name} `, h('span', {class: 'mono'}, id)),
        this.#table(id, state.windows[id]), h('emp-plane-form', {'data-window': id}))))
  }

  /** @param {string} id @param {any} window */
  #table(id, {plane, picture, source}) {
    const {app, base, crop, order, muted} = plane
    const row = (/** @type {string} */ word, /** @type {'rect' | 'display' | 'active'} */ part, /** @type {string} */ none) => [
      h('tr', {key: word}, h('th', {scope: 'row'}, word), ...base[part]
        ? [h('td', null, this.#value(`${id} ${word}, app`, numbersText(app[part]))), h('td', null, this.#value(`${id} ${word}, base`, numbersText(base[part])))]
        : [h('td', {colspan: 2, class: 'dim'}, none)]),
      h('tr', {key: `${word} back`}, h('td', null), h('td', {colspan: 2, class: 'dim'}, base[part] ? rounding(base[part]) : '\u00a0')),
    ]
    const line = (/** @type {string} */ word, /** @type {string} */ value, /** @type {import('./dom.js').Child} */ meaning = null) =>
      h('tr', {key: word}, h('th', {scope: 'row'}, word), h('td', {colspan: 2}, this.#value(`${id} ${word}`, value), meaning && h('span', {class: 'dim'}, ' ', meaning)))
    const none = source.number < 0 ? 'no source' : 'no picture'
    return h('table', null,
      h('thead', null, h('tr', null, h('td', null), h('th', {scope: 'col'}, 'app 960x540'), h('th', {scope: 'col'}, 'base 1920x1080'))),
      h('tbody', null,
        row('Place', 'rect', ''), row('Shown at', 'display', ''), row('Content', 'active', none),
        crop ? line('Crop', numbersText(crop), picture && `of ${pictureText(picture)}`)
          : h('tr', {key: 'Crop'}, h('th', {scope: 'row'}, 'Crop'), h('td', {colspan: 2, class: 'dim'}, picture ? `none: all of ${pictureText(picture)}` : 'none')),
        line('Order', String(order), orderText(order)),
        line('Hidden', muted ? 'on' : 'off', muted ? 'the picture is not seen' : 'the picture is seen'),
        h('tr', {key: 'Outside', class: 'outside'}, h('th', {scope: 'row'}, 'Outside'), h('td', {colspan: 2}, beyondText(app.display, appSpace).replace('outside: ', '') || h('span', {class: 'dim'}, 'nothing')))))
  }

  /** A value that a click copies and that flashes after a change. @param {string} name @param {string} text */
  #value(name, text) {
    const before = this.#last.get(name)
    this.#last.set(name, text)
    return h('button', {class: 'plain mono value', title: 'Copy', 'aria-label': `${text}, copy ${name}`, onclick: () => copy(text)},
      h('span', {key: text, class: before !== undefined && before !== text && 'flash'}, text))
  }
}
customElements.define('emp-planes', Planes)

/** The rectangle of the base screen after an app reads it and sets it again. @param {Rect} rect */
function rounding(rect) {
  const back = eachOf(rect, length => toBase(toApp(length)))
  const lost = sides.filter(side => back[side] !== rect[side])
  if (lost.length === 0) return 'and back: the same'
  return h('span', {title: `Rounded: ${lost.join(', ')}`}, 'and back: ', h('span', {class: 'mono'}, sides.map((side, at) => [
    at > 0 && ',', h(lost.includes(side) ? 'strong' : 'span', {key: side}, back[side])])))
}
