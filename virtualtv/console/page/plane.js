// SPDX-License-Identifier: MIT
/* Derives from the state of a set what its planes show, and where: the picture or a test card. */
import {baseScreen, common, fitted, has} from './geometry.js'
import {antennas} from './numbers.js'
import {numberOf, shownName} from './services.js'

/** @typedef {import('./geometry.js').Rect} Rect */
/** @typedef {import('./geometry.js').Ratio} Ratio */
/** @typedef {'main' | 'pip'} WindowId */

/**
 * @typedef {object} Card  the content of a test card
 * @property {'service' | 'input' | 'isp' | 'sound' | 'message'} kind
 * @property {string} seed  the text that its look is derived from
 * @property {string} title
 * @property {string} number  empty for none
 * @property {string[]} lines
 * @property {number} rate  pictures a second; 0 if nothing moves
 */

/**
 * @typedef {object} Shown  what a window shows
 * @property {WindowId} id
 * @property {string} name  for people
 * @property {Card | null} card  null if nothing is visible
 * @property {string} label  describes the content in one line
 * @property {any} picture  as in the state; null without one
 * @property {Rect} display  the plane's display rectangle, on the base screen like all following rectangles
 * @property {Rect | null} seen  the part of `display` that is on the screen; null for none
 * @property {Rect} whole  where the whole picture would be without cropping
 * @property {Rect} content  where the content of that whole picture would be
 * @property {Rect} active  the part that is not black
 * @property {Ratio} ratio  aspect ratio of the content
 * @property {any} plane  as in the state
 * @property {number} noise  how much of the signal is lost, 0 to 255
 * @property {string} recording  identifies the service and the tracks of the recording that plays in place of the card;
 *   empty for none
 */

/** @type {{id: WindowId, name: string}[]} */
export const windows = [{id: 'main', name: 'Main picture'}, {id: 'pip', name: 'Picture-in-picture'}]
const wide = {width: 16, height: 9}
const narrow = {width: 4, height: 3}

/** The meaning of the set's plane orders. @param {number} order */
export const orderText = order => order > 1 ? 'in front of the app' : 'behind the app'

/**
 * The aspect ratio of the content according to the four bits of the format description; undefined if the content fills
 * the picture.
 * @param {number} activeFormat
 * @return {Ratio | undefined}
 */
function contentRatio(activeFormat) {
  if (activeFormat === 9 || activeFormat === 13) return narrow
  if (activeFormat === 10 || activeFormat === 14 || activeFormat === 15) return wide
  return activeFormat === 11 ? {width: 14, height: 9} : undefined
}

/** A rectangle in the form of knobs. @param {Rect} rect */
export const numbersText = ({x, y, width, height}) => `${x},${y},${width},${height}`

/** @param {any} picture */
export const pictureText = picture => `${picture.width}x${picture.height}@${picture.rate}`

/** @param {any[]} tracks @param {number} at @param {string} none */
function trackText(tracks, at, none) {
  if (at < 0) return none
  const track = tracks[at]
  return track ? track.readable ? track.lang : 'unreadable' : 'missing'
}

/** @param {any} tracks */
function tracksText({audio, audioInUse, subtitles, subtitleInUse}) {
  return `Audio ${trackText(audio, audioInUse, 'none')}, subtitles ${trackText(subtitles, subtitleInUse, 'off')}`
}

/** @param {Partial<Card>} card @return {Card} */
const cardOf = card => ({kind: 'message', seed: '', title: '', number: '', lines: [], rate: 0, ...card})

/** @param {any} window  of a state @param {string | undefined} kind  of its service; undefined if unknown */
function serviceCard({service, source, tvMode, tracks, picture}, kind) {
  const card = {
    seed: service.id ?? `#${service.key} ${service.name}`, title: shownName(service.name), number: numberOf(service),
    lines: [`${source.name ?? `Source ${source.number}`}, ${antennas[tvMode.antenna] ?? tvMode.antenna}`, tracksText(tracks)],
  }
  if (picture) return cardOf({...card, kind: 'service', rate: picture.rate})
  const word = kind === 'radio' ? 'Radio' : kind === 'data' ? 'Data service' : 'No picture'
  return cardOf({...card, kind: 'sound', lines: [word, ...card.lines]})
}

/** Identifies what a window's recording plays; a change of this text restarts it. @param {any} window  of a state */
function recordingOf({service, source, picture, tracks}) {
  if (source.state !== 2 || source.number !== 0 || !picture || !service?.recording) return ''
  const {audio, audioInUse, subtitles, subtitleInUse} = tracks
  return JSON.stringify([service.key, service.id, service.recording, audio[audioInUse]?.pid, subtitles[subtitleInUse]?.pid])
}

/** @param {any} state @param {WindowId} id @param {(service: any) => string | undefined} kindOf @return {Card | null} */
function cardIn(state, id, kindOf) {
  const window = state.windows[id]
  const {service, source, picture} = window
  const name = source.name ?? `Source ${source.number}`
  if (source.state === 2 && source.number === 0 && service) return serviceCard(window, picture ? undefined : kindOf(service))
  if (source.state === 2 && picture) {
    return cardOf({kind: 'input', seed: `input ${source.number}`, title: name, lines: [`${picture.width} x ${picture.height}`, `${picture.rate} pictures a second`], rate: picture.rate})
  }
  if (source.state === 1) return cardOf({title: 'No signal', lines: [name]})
  if (source.state === 2) return cardOf({title: source.number === 0 ? 'No service' : 'No picture', lines: [name]})
  if (id === 'main' && state.isp.shown) return ispCard(state.isp)
  if (source.state !== -1) return cardOf({title: 'No picture', lines: [name, `Source state ${source.state}`]})
  return id === 'main' ? cardOf({title: 'No source'}) : null
}

/** @param {any} isp */
function ispCard({picture, tracks}) {
  return cardOf({kind: 'isp', seed: 'isp', title: 'ISP', lines: [`${picture.width} x ${picture.height}`, tracksText(tracks)], rate: 25})
}

/** @param {Card | null} card @param {any} picture @param {number} noise */
function labelOf(card, picture, noise) {
  if (!card) return 'No source'
  const parts = [`${card.number} ${card.title}`.trim(), ...card.lines, card.kind === 'service' && pictureText(picture), noise > 0 && `signal fades by ${noise} of 255`]
  return parts.filter(Boolean).join(', ')
}

/**
 * The rectangle of the whole picture, scaled so that the visible part fits its display rectangle in the picture's
 * aspect ratio.
 * @param {Rect} frame @param {any} picture @param {Rect | null} crop @return {Rect}
 */
function wholeOf(frame, picture, crop) {
  if (!picture || !crop) return frame
  const across = frame.width / crop.width
  const down = frame.height / crop.height
  return {x: frame.x - crop.x * across, y: frame.y - crop.y * down, width: picture.width * across, height: picture.height * down}
}

/**
 * The rectangle of the content, centred in a picture.
 * @param {Rect} whole
 * @param {Ratio} shape
 * @param {Ratio} ratio
 * @return {Rect}
 */
function contentOf(whole, shape, ratio) {
  const share = ratio.width * shape.height / (ratio.height * shape.width)
  const width = whole.width * Math.min(1, share)
  const height = whole.height / Math.max(1, share)
  return {x: whole.x + (whole.width - width) / 2, y: whole.y + (whole.height - height) / 2, width, height}
}

/**
 * What a window shows.
 * @param {any} state  a result of `tv.state` @param {{id: WindowId, name: string}} window
 * @param {(service: any) => string | undefined} kindOf  returns 'radio', 'data' or 'television', undefined if unknown
 * @return {Shown}
 */
export function shownIn(state, {id, name}, kindOf) {
  const {plane, picture: told, source} = state.windows[id]
  const card = cardIn(state, id, kindOf)
  const picture = card?.kind === 'isp' ? {...state.isp.picture, rate: 25, shape: '16:9', activeFormat: 8} : told
  const shape = picture?.shape === '4:3' ? narrow : wide
  const ratio = (picture && contentRatio(picture.activeFormat)) ?? shape
  const {display} = plane.base
  const frame = fitted(display, shape)
  const whole = wholeOf(frame, picture, plane.crop)
  const noise = source.number === 0 && told !== null ? state.tuner.fade : 0
  return {
    id, name, card, label: labelOf(card, picture, noise), picture, display, seen: common(display, baseScreen), whole,
    content: contentOf(whole, shape, ratio), active: plane.base.active ?? frame, ratio, plane,
    noise, recording: recordingOf(state.windows[id]),
  }
}

/**
 * The pixel of a picture at a position of the base screen; null on black.
 * @param {Shown} shown
 * @param {number} x
 * @param {number} y
 */
export function pixelAt({picture, whole, active}, x, y) {
  if (!picture || !has(active, x, y)) return null
  const pixel = {x: Math.floor((x - whole.x) * picture.width / whole.width), y: Math.floor((y - whole.y) * picture.height / whole.height)}
  return pixel.x >= 0 && pixel.y >= 0 && pixel.x < picture.width && pixel.y < picture.height ? pixel : null
}

/**
 * The frontmost plane at a position of the base screen.
 * @param {Shown[]} all
 * @param {number} x
 * @param {number} y
 * @return {Shown | undefined}
 */
export function planeAt(all, x, y) {
  const there = all.filter(({display, plane, card}) => card && !plane.muted && has(display, x, y))
  return there.sort((one, other) => depth(other) - depth(one))[0]
}

/** The depth of a plane; higher ones are in front. The app has `appDepth`. @param {Shown} shown */
export const depth = ({id, plane}) => plane.order * 10 + (id === 'pip' ? 2 : 1)
export const appDepth = 10

/** A rectangle as percentages of the base screen, for CSS. @param {Rect} rect */
export function placed({x, y, width, height}) {
  return {
    left: `${x / baseScreen.width * 100}%`, top: `${y / baseScreen.height * 100}%`,
    width: `${width / baseScreen.width * 100}%`, height: `${height / baseScreen.height * 100}%`,
  }
}
