// SPDX-License-Identifier: MIT
import {attempt} from './attempt.js'
import {h} from './dom.js'
import {audioModes, audioTypes, codingNames, languageName, subtitleTypes} from './numbers.js'
import {Part} from './part.js'
import {lineOf} from './services.js'
import {troubleOf} from './reply.js'
import {store} from './store.js'
import {main, onWindow, pip, tracksAreIsp} from './windows.js'

/**
 * A window, or the ISP source, whose tracks are listed.
 * @typedef {{name: string, title: string, on: string, knob: string, tracks: any, number?: number}} Place
 */

/** Audio tracks and subtitles of the services on screen and of the ISP source. */
class Tracks extends Part {
  static uses = /** @type {(keyof import('./store.js').Known)[]} */ (['state', 'settings'])
  /** @type {string | undefined} */
  #failure

  view() {
    const state = store.get('state')
    if (!state) return h('p', {class: 'empty'}, 'Tracks appear here once the TV is connected.')
    const {windows, isp} = state
    /** @type {Place[]} */
    const places = [
      {name: 'main', title: 'Main picture', on: lineOf(windows.main.service), knob: 'main.', tracks: windows.main.tracks, number: main},
      {name: 'pip', title: 'Picture-in-picture', on: lineOf(windows.pip.service), knob: 'pip.', tracks: windows.pip.tracks, number: pip},
      {name: 'isp', title: 'ISP source', on: isp.shown ? 'shown by the second TV stack' : 'not shown', knob: 'isp.', tracks: isp.tracks},
    ]
    return h('div', {class: 'pane-body'},
      h('p', {class: 'fail tracks-said', role: 'status'}, this.#failure ?? ''),
      places.map(place => this.#place(place)))
  }

  /** @param {Place} place */
  #place(place) {
    const {name, title, on, tracks} = place
    return h('section', {key: name, class: 'tracks', 'aria-labelledby': `tracks-${name}`},
      h('h3', {id: `tracks-${name}`}, title),
      h('p', {class: 'name cut', title: on}, on),
      this.#list('Audio', place, tracks.audio, tracks.audioInUse, audioFacts),
      this.#list('Subtitles', place, tracks.subtitles, tracks.subtitleInUse, subtitleFacts, 'off'))
  }

  /** @param {'Audio' | 'Subtitles'} kind @param {Place} place @param {any[]} tracks @param {number} inUse @param {(track: any) => string[]} facts @param {string} [none] */
  #list(kind, place, tracks, inUse, facts, none) {
    const isUnknown = inUse >= tracks.length || inUse < (none ? -1 : 0)
    return [
      h('h4', {class: 'dim'}, kind, tracks.length > 0 && isUnknown && ` (${inUse} in use: no such track)`),
      tracks.length === 0 && h('p', {class: 'dim'}, `No ${kind.toLowerCase()}. Set the knob ${place.name === 'isp' ? `isp.${kind.toLowerCase()}` : `${kind.toLowerCase()} of the service`} to add some.`),
      h('div', {role: 'group', class: 'track-list', 'aria-label': `${kind} of ${place.title}`},
        none && tracks.length > 0 && this.#button(place, kind, -1, inUse, ['-1', none]),
        tracks.map((track, at) => this.#button(place, kind, at, inUse, [String(at), `${track.lang} ${languageName(track.lang)}`, ...facts(track)], track.readable))),
    ]
  }

  /** @param {Place} place @param {'Audio' | 'Subtitles'} kind @param {number} at @param {number} inUse @param {string[]} facts @param {boolean} [readable] */
  #button(place, kind, at, inUse, [number, what, ...facts], readable = true) {
    return h('button', {key: at, class: 'track', 'aria-pressed': String(at === inUse), onclick: () => this.#choose(place, kind, at)},
      h('code', null, number), h('span', null, what), h('span', {class: 'dim track-facts'}, facts.join(', '), !readable && ' (can\'t be read)'))
  }

  /**
   * Uses a command if one applies to these tracks, else the knob.
   * @param {Place} place
   * @param {'Audio' | 'Subtitles'} kind
   * @param {number} at
   */
  async #choose({name, knob, number}, kind, at) {
    const isIsp = tracksAreIsp()
    const byCommand = kind === 'Audio' ? isIsp === (name === 'isp') : at >= 0 && (isIsp ? name === 'isp' : name === 'main')
    if (byCommand) {
      const command = kind === 'Audio' ? 'ChangeAudioByIndex' : 'ChangeSubtitle'
      const [reply] = await onWindow(number ?? main, [command, at])
      this.#failure = troubleOf(command, reply)
    } else {
      const ending = name === 'isp' ? '_in_use' : ''
      this.#failure = await attempt('tv.set', {name: `${knob}${kind === 'Audio' ? 'audio' : 'subtitle'}${ending}`, value: at})
    }
    this.changed()
  }
}
customElements.define('emp-tracks', Tracks)

/** @param {any} track @return {string[]} */
function audioFacts({coding, mode, type, pid}) {
  return [`${coding} ${codingNames[coding] ?? 'no known coding'}`, `${mode} ${audioModes[mode] ?? 'no known mode'}`,
    `${type} ${audioTypes[type] ?? 'no known type'}`, `PID ${pid}`]
}

/** @param {any} track @return {string[]} */
function subtitleFacts({type, pid}) {
  return [`${type} ${subtitleTypes[type] ?? 'no known type'}`, `PID ${pid}`]
}
