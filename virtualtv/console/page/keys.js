// SPDX-License-Identifier: MIT
/* The keys of the remote control, and their keyboard equivalents. */

/**
 * @typedef {object} Key
 * @property {string} name  its name for people and apps
 * @property {string} face  the text on the button
 * @property {string} [letter]  the letter key that presses it; underlined in the face
 * @property {string[]} [keyboard]  other keyboard keys that press it, as `KeyboardEvent.key` names them
 * @property {string} [icon]  drawn before the face: an SVG path in a square of 10 x 10, filled by the rule evenodd
 * @property {string} [look]  a class of its button
 */

/** @param {string} name @param {string} face @param {Partial<Key>} [more] @return {Key} */
const key = (name, face, more) => ({name, face, ...more})
const digit = (/** @type {number} */ number) => key(String(number), String(number), {keyboard: [String(number)]})

/**
 * The rows of keys. A row has twelve columns; `spans` is how many of them each key takes.
 * @type {{spans: number[], keys: Key[]}[]}
 */
export const rows = [
  {spans: [2, 2, 2, 2, 2, 2], keys: [digit(1), digit(2), digit(3),
    key('Channel up', '+', {keyboard: ['PageUp'], look: 'step'}), key('Up', '▲', {keyboard: ['ArrowUp']}), key('Info', 'i', {letter: 'i'})]},
  {spans: [2, 2, 2, 2, 2, 2], keys: [digit(4), digit(5), digit(6),
    key('Left', '◀', {keyboard: ['ArrowLeft']}), key('OK', 'OK', {keyboard: ['Enter']}), key('Right', '▶', {keyboard: ['ArrowRight']})]},
  {spans: [2, 2, 2, 2, 2, 2], keys: [digit(7), digit(8), digit(9),
    key('Channel down', '−', {keyboard: ['PageDown'], look: 'step'}), key('Down', '▼', {keyboard: ['ArrowDown']}),
    key('Exit', 'x', {letter: 'x', keyboard: ['Escape']})]},
  {spans: [2, 2, 2, 3, 3], keys: [key('Previous channel', '⇄', {keyboard: ['Backspace']}), digit(0),
    key('Back', 'K', {letter: 'k', icon: 'M4 1V3H7A3 3 0 0 1 7 9H3V7.5H7A1.5 1.5 0 0 0 7 4.5H4V6.5L0.5 3.75Z'}), key('Menu', 'Menu', {letter: 'n'}), key('Guide', 'Guide', {letter: 'd'})]},
  {spans: [4, 4, 4], keys: [key('Source', 'Source', {letter: 's'}), key('Audio', 'Audio', {letter: 'a'}),
    key('Subtitles', 'Subtitles', {letter: 't'})]},
  {spans: [3, 3, 2, 2, 2], keys: [key('Mute picture', 'Mute', {letter: 'm'}), key('Picture-in-picture', 'P', {letter: 'p', icon: 'M0 1H10V9H0ZM1 2V8H9V2ZM5 5H8V7H5Z'}),
    key('Play', 'L', {letter: 'l', icon: 'M2 1L9 5L2 9Z', keyboard: ['MediaPlay', 'MediaPlayPause']}),
    key('Pause', 'U', {letter: 'u', icon: 'M2 1H4V9H2ZM6 1H8V9H6Z', keyboard: ['MediaPause']}), key('Stop', 'O', {letter: 'o', icon: 'M1 1H9V9H1Z', keyboard: ['MediaStop']})]},
  {spans: [3, 3, 3, 3], keys: [key('Red', 'R', {letter: 'r', look: 'red'}), key('Green', 'G', {letter: 'g', look: 'green'}),
    key('Yellow', 'Y', {letter: 'y', look: 'yellow'}), key('Blue', 'B', {letter: 'b', look: 'blue'})]},
]

/** @type {Map<string, Key>} */
const byKeyboard = new Map(rows.flatMap(({keys}) => keys).flatMap(each =>
  [...each.keyboard ?? [], ...each.letter ? [each.letter] : []].map(name => [name.toLowerCase(), each])))

/** Keyboard keys that operate the remote control, as `KeyboardEvent.key` names them, in lower case. */
export const keyboardKeys = [...byKeyboard.keys()]

/** The keyboard keys for a key, in names for people. @param {Key} of @return {string} */
export function shortcutOf({letter, keyboard}) {
  return [...letter ? [letter.toUpperCase()] : [], ...keyboard ?? []].join(', ')
}

/** Elements with their own use of the keyboard. */
const own = 'input, textarea, select, iframe, dialog, [contenteditable], [role="listbox"], [role="grid"], [role="tab"], [role="separator"], [role="combobox"]'
const pressable = 'button, a, summary'

/** The remote control's key for a keyboard event, unless the event is meant for another element. @param {KeyboardEvent} event */
export function keyOf(event) {
  if (event.defaultPrevented || event.ctrlKey || event.altKey || event.metaKey || document.querySelector('dialog[open]')) return undefined
  const target = event.target instanceof Element ? event.target : document.body
  if (target.closest(own)) return undefined
  if (event.key === 'Enter' && target.closest(pressable)) return undefined
  return byKeyboard.get(event.key.toLowerCase())
}
