// SPDX-License-Identifier: MIT
/* What this browser keeps of the page from one visit to the next. Where it keeps nothing, the page works all the same. */

/** @type {string | undefined} */
let token

/** Keeps the server's token for this tab. @param {string} given */
export function rememberToken(given) {
  token = given
  try {
    sessionStorage.setItem('emp-window.token', given)
  } catch {
    // Then it is known until the page is loaded anew.
  }
}

/** The server's token, where this tab was given one. */
export function rememberedToken() {
  try {
    return token ?? sessionStorage.getItem('emp-window.token') ?? undefined
  } catch {
    return token
  }
}

/** What was kept the last time. @param {string} key @param {any} preset  where there is nothing */
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
    // A browser that keeps nothing starts anew each time.
  }
}
