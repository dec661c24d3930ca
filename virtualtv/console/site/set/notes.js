// SPDX-License-Identifier: MIT
/* Notes of a tab for the next load of its page. */

/** @param {string} name @return {boolean | undefined} undefined where the browser forbids storage */
export function isNoted(name) {
  try {
    return sessionStorage.getItem(name) !== null
  } catch {
    return undefined
  }
}

/** @param {string} name @param {boolean} isSo */
export function note(name, isSo) {
  try {
    if (isSo) sessionStorage.setItem(name, '1')
    else sessionStorage.removeItem(name)
  } catch {
    // Without storage, the next load does not know of it.
  }
}
