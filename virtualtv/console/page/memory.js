// SPDX-License-Identifier: MIT
/* Data of the page that this browser stores between visits. The page also works without storage. */

/** @type {string | undefined} */
let token

/** Stores the server's token for this tab. @param {string} given */
export function rememberToken(given) {
  token = given
  try {
    sessionStorage.setItem('emp-window.token', given)
  } catch {
    // Without storage, it is known until the page is reloaded.
  }
}

/** The server's token, if this tab has one. */
export function rememberedToken() {
  try {
    return token ?? sessionStorage.getItem('emp-window.token') ?? undefined
  } catch {
    return token
  }
}

/** A stored value. @param {string} key @param {any} preset  the default */
export function remembered(key, preset) {
  try {
    return JSON.parse(localStorage.getItem(`emp-window.${key}`) ?? 'null') ?? preset
  } catch {
    return preset
  }
}

/** @param {string} key @param {any} value */
export function remember(key, value) {
  try {
    localStorage.setItem(`emp-window.${key}`, JSON.stringify(value))
  } catch {
    // Without storage, each visit starts with the defaults.
  }
}
