// SPDX-License-Identifier: MIT
/* The names of services in texts. */
import {h} from './dom.js'

/** True if a name has a visible character. @param {string | null | undefined} name */
function isSeen(name) {
  return /[^\p{Cc}\p{Cf}\p{Z}\p{Default_Ignorable_Code_Point}]/u.test(name ?? '')
}

/** A name for use within a sentence. @param {string | null | undefined} name @return {string} */
export function shownName(name) {
  return isSeen(name) ? /** @type {string} */ (name) : '(no name)'
}

/** A number with its noun. @param {number} count @param {string} what  the noun in singular */
export const counted = (count, what) => `${count} ${what}${count === 1 ? '' : 's'}`

/** A service's number, written as the shell does. @param {{major?: number | null, minor?: number | null}} service */
export function numberOf({major, minor}) {
  if (major === null || major === undefined) return ''
  return minor ? `${major}-${minor}` : String(major)
}

/** A name, or a note that there is none. @param {string | null | undefined} name */
export function nameOf(name) {
  return isSeen(name) ? h('bdi', {class: 'name cut', title: name}, name) : h('span', {class: 'dim'}, '(no name)')
}

/** Number and name in one line. @param {any} service  null for none */
export function lineOf(service) {
  return service ? `${numberOf(service)} ${shownName(service.name)}`.trim() : 'no service'
}
