// SPDX-License-Identifier: MIT
// The app without its page: it asks the object that the set puts there, so that tests can hand it another one.

/** The channels of the set, {name, major, minor} each; none while the set has none to tell. */
export function channels(tvWindow) {
  const list = tvWindow.Execute('GetFullChannelList')
  if (typeof list !== 'string' || list === '') return []  // a number says why
  return JSON.parse(list).TCServiceData.map(({SERVICE_NAME: name, MAJOR: major, MINOR: minor}) => ({name, major, minor}))
}

/** What stands on the screen, as a line for people. */
export function onScreen(tvWindow) {
  if (tvWindow.Execute('GetSource', 0) !== 0) return 'Another input'
  const name = tvWindow.Execute('GetCurrentChannel_Name')
  return typeof name === 'string' ? name : 'No channel'
}

/** Puts a channel on the screen. @return whether it worked */
export function show(tvWindow, {major, minor}) {
  return tvWindow.Execute('SetChannel', major, minor) === 1
}
