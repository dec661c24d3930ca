// SPDX-License-Identifier: MIT
import {act} from './act.js'
import {h} from './dom.js'
import {download} from './download.js'
import {Part} from './part.js'
import {counted} from './services.js'
import {store} from './store.js'

/**
 * The formats of a list, and the names of their files.
 * @type {{format: 'json' | 'vdr' | 'dvbv5' | 'm3u', label: string, file: string, type: string, help: string}[]}
 */
const formats = [
  {format: 'json', label: 'JSON', file: 'channels.json', type: 'application/json', help: 'all that the set keeps of them'},
  {format: 'vdr', label: 'VDR', file: 'channels.conf', type: 'text/plain', help: 'channels.conf'},
  {format: 'dvbv5', label: 'libdvbv5', file: 'dvb_channel.conf', type: 'text/plain', help: 'a section for each channel'},
  {format: 'm3u', label: 'M3U', file: 'channels.m3u', type: 'audio/x-mpegurl', help: 'channels with an address'},
]

/** Downloads the services as a channel list, and reports what the list omits. */
class ChannelExport extends Part {
  /** Called when a person is done. @type {() => void} */
  onend = () => {}
  /** The result of the export. @type {{file: string, result: any} | undefined} */
  #made
  #failure = ''

  view() {
    return h('section', {class: 'channel-panel', 'aria-label': 'Export channels'},
      h('header', null, h('span', {class: 'grow'}, 'Export all channels as'), h('button', {'aria-label': 'Close the export', onclick: () => this.onend()}, 'Close')),
      h('div', {class: 'row'}, formats.map(each => h('button', {key: each.format, title: each.help, onclick: () => this.#export(each)}, each.label))),
      h('div', {role: 'status'}, this.#failure ? h('p', {class: 'fail'}, this.#failure) : this.#made && told(this.#made)))
  }

  /** @param {typeof formats[0]} format */
  async #export({format, file, type}) {
    const result = await act('tv.export', {format})
    this.#failure = result ? '' : store.get('deed')?.error ?? 'it failed'
    this.#made = result && {file, result}
    if (result && result.services > 0) download(file, result.content, type)
    this.changed()
  }
}
customElements.define('emp-channel-export', ChannelExport)

/** @param {{file: string, result: any}} made */
function told({file, result: {services, leftOut, lost}}) {
  return [
    h('p', null, services > 0 ? `${counted(services, 'channel')} saved as ${file}.` : 'No channel can be written in this format; nothing was saved.',
      leftOut > 0 && services > 0 && ` ${leftOut} left out: the format can't hold ${leftOut === 1 ? 'it' : 'them'}.`),
    lost.length > 0 && h('p', {class: 'lost'}, h('span', {class: 'dim'}, 'Lost: '), lost.map((/** @type {any} */ loss, /** @type {number} */ at) =>
      [at > 0 && ', ', `${loss.what} of ${loss.services}`])),
  ]
}
