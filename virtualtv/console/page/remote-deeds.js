// SPDX-License-Identifier: MIT
/* The actions of the remote control's keys. Each returns its result in one line. */
import {tv} from './act.js'
import {attempt} from './attempt.js'
import {antennas, languageName, sourceOf} from './numbers.js'
import {troubleOf} from './reply.js'
import {lineOf} from './services.js'
import {store} from './store.js'
import {main, onWindow, pip, tracksAreIsp} from './windows.js'

const anyMinor = -1

/** @typedef {{text: string, failed?: boolean}} Outcome  what happened, for a person */

/** @param {string} text @return {Outcome} */
const failed = text => ({text, failed: true})

/**
 * Runs a command on the main window.
 * @param {string} name
 * @param {...(string | number)} parameters
 * @return {Promise<string | undefined>} the error, if any
 */
async function run(name, ...parameters) {
  const [reply] = await onWindow(main, [name, ...parameters])
  return troubleOf(name, reply)
}

/** Tunes the main window. @param {string} name @param {...(string | number)} parameters @return {Promise<Outcome>} */
async function tune(name, ...parameters) {
  const failure = await run(name, ...parameters)
  return failure ? failed(failure) : {text: lineOf((await tv().state()).windows.main.service)}
}

/**
 * Tunes to the first channel with a number, such as 4 or else 4-1, on the antenna in use. SetChannel would also use
 * another antenna. @param {string} digits @return {Promise<Outcome>}
 */
export async function tuneToNumber(digits) {
  const major = Number(digits)
  const antenna = /** @type {'terrestrial' | 'cable' | 'satellite'} */ (antennas[store.get('state').windows.main.tvMode.antenna])
  const here = await tv().services({antenna, major, limit: 0})
  const [other] = here.total > 0 ? [] : (await tv().services({major, limit: 1})).services
  if (!other) return tune('SetChannel', major, anyMinor)
  return failed(`No channel ${major} on ${antenna}. Choose TV mode ${other.antenna} for ${lineOf(other)}`)
}

/** Tunes to a service from any antenna and source. @param {{id: string | null}} service @return {Promise<Outcome>} */
export async function tuneToService({id}) {
  if (!id) return failed('This service has no id, which the command needs. The knob main.service takes its key instead.')
  return tune('SetChannelByServiceid', id)
}

/** Shows an input on the main window. @param {number} plugin  the plug-in's number @param {string} name @return {Promise<Outcome>} */
export async function show(plugin, name) {
  const failure = await run('SetSource', plugin)
  return failure ? failed(failure) : {text: `${plugin} ${name}`}
}

/** @return {Promise<Outcome>} */
async function nextSource() {
  const {inputs, windows} = store.get('state')
  const others = inputs.filter((/** @type {any} */ input) => input.plugged && sourceOf(input.source)?.canBeShown)
  if (others.length === 0) return failed('No input is plugged in')
  const at = others.findIndex((/** @type {any} */ input) => input.source === windows.main.source.number)
  const next = others[(at + 1) % others.length]
  return show(/** @type {import('./numbers.js').Source} */ (sourceOf(next.source)).plugin, next.name)
}

/** The tracks that commands apply to, and the knobs of the tracks in use. */
function tracksInUse() {
  const {isp, windows} = store.get('state')
  return tracksAreIsp() ? {tracks: isp.tracks, subtitleKnob: 'isp.subtitle_in_use'} : {tracks: windows.main.tracks, subtitleKnob: 'main.subtitle'}
}

/** @return {Promise<Outcome>} */
async function nextAudio() {
  const {audio, audioInUse} = tracksInUse().tracks
  if (audio.length === 0) return failed('No audio tracks')
  const next = (audioInUse + 1) % audio.length
  const failure = await run('ChangeAudioByIndex', next)
  return failure ? failed(failure) : {text: `Audio ${next} ${languageOf(audio[next])}`}
}

/** @return {Promise<Outcome>} */
async function nextSubtitle() {
  const {tracks: {subtitles, subtitleInUse}, subtitleKnob} = tracksInUse()
  if (subtitles.length === 0) return failed('No subtitles')
  const next = subtitleInUse + 1
  if (next < subtitles.length) {
    const failure = await run('ChangeSubtitle', next)
    return failure ? failed(failure) : {text: `Subtitle ${next} ${languageOf(subtitles[next])}`}
  }
  // The plug-in has no command to switch subtitles off.
  const reason = await attempt('tv.set', {name: subtitleKnob, value: -1})
  return reason ? failed(reason) : {text: 'Subtitles -1 off'}
}

/** @param {{lang: string | number}} track */
const languageOf = ({lang}) => `${lang} ${languageName(lang)}`

/** @return {Promise<Outcome>} */
async function toggleMute() {
  const mute = !store.get('state').windows.main.plane.muted
  const failure = await run('MuteVideo', mute ? 1 : 0)
  return failure ? failed(failure) : {text: mute ? 'Picture hidden' : 'Picture shown'}
}

/** @return {Promise<Outcome>} */
async function togglePip() {
  const {windows} = store.get('state')
  const isOpen = windows.pip.source.number >= 0
  // In this window SetSource and DisconnectSource return 0 even on success, so check the set's state.
  const first = windows.pip.service ?? windows.main.previousService ?? windows.main.service
  /** @type {[string, ...(string | number)[]][]} */
  const opening = [['SetSource', 0], ...!windows.pip.service && first?.id ? [/** @type {[string, string]} */ (['SetChannelByServiceid', first.id])] : []]
  await onWindow(pip, ...isOpen ? [/** @type {[string]} */ (['DisconnectSource'])] : opening)
  const now = (await tv().state()).windows.pip
  if (isOpen === now.source.number >= 0) return failed(`Picture-in-picture ${isOpen ? 'stays open' : 'does not open'}: the set refuses`)
  return {text: isOpen ? 'Picture-in-picture closed' : `Picture-in-picture ${lineOf(now.service)}`}
}

/** @return {Promise<Outcome>} */
async function previousChannel() {
  const {previousService} = store.get('state').windows.main
  return previousService ? tuneToService(previousService) : failed('There is no previous channel yet')
}

/** The actions by the name of the key. @type {{[key: string]: () => Promise<Outcome>}} */
export const deeds = {
  'Channel up': () => tune('SetChannel_Seek', 3, 0),
  'Channel down': () => tune('SetChannel_Seek', 4, 0),
  'Previous channel': previousChannel,
  Source: nextSource,
  Audio: nextAudio,
  Subtitles: nextSubtitle,
  'Mute picture': toggleMute,
  'Picture-in-picture': togglePip,
}
