// SPDX-License-Identifier: MIT
/** Lets the browser save a file. @param {string} name @param {string} content @param {string} [type]  its media type */
export function download(name, content, type = 'text/plain') {
  const link = document.createElement('a')
  link.href = URL.createObjectURL(new Blob([content], {type}))
  link.download = name
  link.click()
  setTimeout(() => URL.revokeObjectURL(link.href), 60_000)
}
