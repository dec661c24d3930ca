// SPDX-License-Identifier: MIT
/* How services are named. */
import {h} from './dom.js'

/** Whether a name has anything that can be seen. @param {string | null | undefined} name */
function isSeen(name) {
  return /[^\p{Cc}\p{Cf}\p{Z}\p{Default_Ignorable_Code_Point}]/u.test(name ?? '')
}

/** A name as it is shown where it stands among other words. @param {string | null | undefined} name @return {string} */
export function shownName(name) {
  return isSeen(name) ? /** @type {string} */ (name) : '(no name)'
}

/** How many there are of something, in words. @param {number} count @param {string} what  one of them */
export const counted = (count, what) => `${count} ${what}${count === 1 ? '' : 's'}`

/** A service's number, written as the shell does. @param {{major?: number | null, minor?: number | null}} service */
export function numberOf({major, minor}) {
  if (major === null || major === undefined) return ''
  return minor ? `${major}-${minor}` : String(major)
}

/** A name, told as such where there is none. @param {string | null | undefined} name */
export function nameOf(name) {
  return isSeen(name) ? h('bdi', {class: 'name cut', title: name}, name) : h('span', {class: 'dim'}, '(no name)')
}

/** Number and name in a line. @param {any} service  null for none */
export function lineOf(service) {
  return service ? `${numberOf(service)} ${shownName(service.name)}`.trim() : 'no service'
}
