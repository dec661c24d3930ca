// SPDX-License-Identifier: MIT
/*
 * Commands apply to the window that their engine has selected. The page's engine keeps the window that the person
 * selected. Commands for another window select that window temporarily.
 */
import {command, tv} from './act.js'
import {store} from './store.js'
import {timeline} from './timeline-log.js'

/** Numbers of the windows for SetWindow. */
export const main = 0
export const pip = 1

/** The window that the page's engine has selected: the main one when it is opened. */
const selected = () => timeline.windows.get(`${tv().session}:main`) === 'pip' ? pip : main

/**
 * Runs commands on a window. All are sent at once, so that no other command comes between.
 * @param {number} window @param {...[string, ...(string | number)[]]} commands  name and parameters of each
 * @return {Promise<any[]>} their replies; undefined for a call that failed
 */
export function onWindow(window, ...commands) {
  return inWindow(window, () => Promise.all(commands.map(([name, ...parameters]) => command(name, ...parameters))))
}

/**
 * Sends calls for a window, all at once.
 * @template Result
 * @param {number} window
 * @param {() => Promise<Result>} send
 * @return {Promise<Result>}
 */
export async function inWindow(window, send) {
  const before = selected()
  // Record only the command as the action, not the window selection.
  const select = async (/** @type {number} */ number) => before !== window && tv().window.SetWindow(number)
  const chosen = select(window)
  const result = send()
  await Promise.allSettled([chosen, select(before)])
  return result
}

/** True if commands for tracks apply to the ISP source, whichever window is selected. */
export function tracksAreIsp() {
  return store.get('settings').some(({key, value}) => key === 'db/boot/last_service' && value === 'isp-service')
}
