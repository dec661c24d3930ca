// SPDX-License-Identifier: MIT
/** Puts a text on the clipboard. @param {string} text */
export async function copy(text) {
  try {
    await navigator.clipboard.writeText(text)
  } catch {
    // A page that is no secure context has no clipboard of that kind.
    const field = document.createElement('textarea')
    field.value = text
    document.body.append(field)
    field.select()
    document.execCommand('copy')
    field.remove()
  }
}
