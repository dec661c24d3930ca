// SPDX-License-Identifier: MIT
// The app without its page. It uses the object that the set provides, so that tests can pass another one.

/** The channels of the set as {name, major, minor}; empty while the set reports none. */
export function channels(tvWindow) {
  const list = tvWindow.Execute('GetFullChannelList')
  if (typeof list !== 'string' || list === '') return []  // a number is a failure code
  return JSON.parse(list).TCServiceData.map(({SERVICE_NAME: name, MAJOR: major, MINOR: minor}) => ({name, major, minor}))
}

/** Describes what is on the screen, in one line. */
export function onScreen(tvWindow) {
  if (tvWindow.Execute('GetSource', 0) !== 0) return 'Another input'
  const name = tvWindow.Execute('GetCurrentChannel_Name')
  return typeof name === 'string' ? name : 'No channel'
}

/** Shows a channel. @return true on success */
export function show(tvWindow, {major, minor}) {
  return tvWindow.Execute('SetChannel', major, minor) === 1
}
