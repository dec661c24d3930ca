// SPDX-License-Identifier: MIT
/* Makes texts readable: escapes invisible characters, and truncates long texts. */

const unseen = /[\0-\x08\x0b-\x1f\x7f-\x9f\u061c\u200b-\u200f\u2028-\u202e\u2060-\u2069\ufeff]|[\ud800-\udbff](?![\udc00-\udfff])|(?<![\ud800-\udbff])[\udc00-\udfff]/g

/** A text in which controls and lone surrogates are written as `\uNNNN`. @param {unknown} text */
export function visible(text) {
  return String(text).replace(unseen, unit => `\\u${unit.charCodeAt(0).toString(16).toUpperCase().padStart(4, '0')}`)
}

/** The start of a text, in one line. @param {unknown} text @param {number} most  characters */
export function front(text, most) {
  const whole = String(text)
  const line = visible(whole.slice(0, most)).replace(/\s+/g, ' ')
  return whole.length > most ? `${line}…` : line
}

/** @param {number} time  ms since 1970 */
export function clock(time) {
  const at = new Date(time)
  const two = (/** @type {number} */ number) => String(number).padStart(2, '0')
  return `${two(at.getHours())}:${two(at.getMinutes())}:${two(at.getSeconds())}.${String(at.getMilliseconds()).padStart(3, '0')}`
}

/** Bytes in base64 as a person can read them. @param {string} base64 */
export function bytesShown(base64) {
  return Array.from(atob(base64), byte => /[ -~]/.test(byte) ? byte : `\\x${byte.charCodeAt(0).toString(16).toUpperCase().padStart(2, '0')}`).join('')
}
