// SPDX-License-Identifier: MIT
/** Copies a text to the clipboard. @param {string} text */
export async function copy(text) {
  try {
    await navigator.clipboard.writeText(text)
  } catch {
    // A page in an insecure context does not have that clipboard.
    const field = document.createElement('textarea')
    field.value = text
    document.body.append(field)
    field.select()
    document.execCommand('copy')
    field.remove()
  }
}
