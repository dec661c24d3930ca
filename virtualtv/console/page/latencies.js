// SPDX-License-Identifier: MIT
/* Latencies: the durations of platform calls. There is a knob for each; this shows those that are not 0. */
import {h} from './dom.js'

/**
 * @param {[string, string][]} all  names of the knobs and their values
 * @param {{[name: string]: string | undefined}} refused  why a value was refused, by name of the knob
 * @param {(name: string, value: string) => void} set
 */
export function latencySection(all, refused, set) {
  const turned = all.filter(([, value]) => value !== '0')
  return h('section', {class: 'latencies', 'aria-labelledby': 'latencies-title'},
    h('h3', {id: 'latencies-title'}, 'Latencies'),
    turned.length === 0 && h('p', {class: 'dim'}, 'No call has a latency. Choose one to make the set slow.'),
    h('ul', {key: 'list', class: 'knob-list'}, turned.map(([name, value]) => h('li', {key: name, class: 'latency'},
      h('code', {class: 'name'}, name.slice('latency.'.length)),
      h('input', {class: 'mono', 'aria-label': name, value, size: 6, inputmode: 'numeric',
        onchange: (/** @type {Event} */ event) => set(name, /** @type {HTMLInputElement} */ (event.target).value)}), 'ms',
      h('button', {class: 'plain', 'aria-label': `Remove ${name}`, title: 'Back to 0', onclick: () => set(name, '0')}, '×')))),
    h('form', {key: 'form', class: 'latency', 'aria-label': 'Set a latency', onsubmit: (/** @type {Event} */ event) => submit(event, set)},
      h('select', {name: 'operation', 'aria-label': 'Call', required: true}, h('option', {value: ''}, 'Choose a call'),
        all.map(([name]) => h('option', {key: name, value: name}, name.slice('latency.'.length)))),
      h('input', {name: 'value', class: 'mono', 'aria-label': 'Milliseconds', placeholder: '0', size: 6, inputmode: 'numeric', required: true}), 'ms', h('button', null, 'Set')),
    all.map(([name]) => refused[name] && h('p', {key: name, class: 'fail', role: 'alert'}, refused[name])))
}

/** @param {Event} event @param {(name: string, value: string) => void} set */
function submit(event, set) {
  event.preventDefault()
  const data = new FormData(/** @type {HTMLFormElement} */ (event.target))
  set(String(data.get('operation')), String(data.get('value')))
}
