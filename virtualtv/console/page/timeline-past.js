// SPDX-License-Identifier: MIT
/*
 * Completes commands from before the page was opened: the server may not have sent events for their calls and log
 * messages, so these are requested.
 */
import {onFrame, store} from './store.js'
import {timeline} from './timeline-log.js'

const most = 300      // the last commands
const together = 10   // requests at a time

/** @param {import('../client.js').Tv} tv @param {number} last  number of the last event from before */
export async function completeTimeline(tv, last) {
  const {server} = timeline
  while (timeline.last < last && timeline.server === server && tv.connected) await new Promise(resolve => onFrame(() => resolve(undefined)))
  const lacking = timeline.entries.filter(({topic, calls, log}) => topic === 'command' && calls.length === 0 && log.length === 0).slice(-most)
  for (let end = lacking.length; end > 0 && timeline.server === server; end -= together) {
    const entries = lacking.slice(Math.max(0, end - together), end)
    const answers = await Promise.allSettled(entries.map(({command}) => tv.why(/** @type {number} */ (command))))
    answers.forEach((answer, at) => answer.status === 'fulfilled' && timeline.complete(entries[at], answer.value))
    store.set('timeline', timeline.version)
  }
}
