/* What this browser keeps of the page from one visit to the next. */

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
