// SPDX-License-Identifier: MIT
// Prints the cost of the page in a browser as a table: figure, measured value, target. The exit status is 1 if a target
// is missed.
import {endServers} from '../../client/support/server.js'
import {closeBrowser, Console, openBrowser} from '../support/console.js'
import {cardCost} from './card.js'
import {channelsCost} from './channels.js'
import {tuneDelay} from './live.js'
import {eventDelay, loadCost} from './page.js'
import {timelineCost} from './timeline.js'

/** Runs one measurement on a page and a TV of its own. */
async function on(measure) {
  const shown = await Console.open()
  try {
    return await measure(shown)
  } finally {
    await shown.page.context().close()
    await shown.tv.close()
    await shown.server.kill()
  }
}

const round = value => Math.round(value * 100) / 100
const longest = tasks => Math.max(0, ...tasks)

/** @return {Promise<[string, number, number, string][]>} figure, measured, the most that is wanted, unit */
async function rows() {
  const load = await on(({page, server}) => loadCost(page, server.address))
  const channels = await on(({page, tv}) => channelsCost(page, tv))
  const timeline = await on(({page, tv}) => timelineCost(page, tv))
  const card = await on(({page}) => cardCost(page))
  const delay = await on(({page, server}) => eventDelay(page, server.address))
  const tune = await tuneDelay()
  return [
    ['bytes that are transferred for the page', load.bytes, 250_000, ''],
    ['from the request until it shows the TV', load.usable, 1000, 'ms'],
    ['longest task while 20,000 services are scrolled', longest(channels.tasks.scrolling), 50, 'ms'],
    ['longest task while they are searched, a key a time', longest(channels.tasks.searching), 50, 'ms'],
    ['longest task while 10,000 entries of the timeline are scrolled', timeline.scrolling, 50, 'ms'],
    ['longest task while they are filtered', timeline.filtering, 50, 'ms'],
    ['longest task while events arrive there', timeline.arriving, 50, 'ms'],
    [`a test card at 25 pictures a second, against a bare canvas (${round(card.card)} to ${round(card.bare)} ms a second)`, card.ratio, 2, ''],
    [`from a command until the page shows it, while 200 events a second arrive (${delay.events} of them; median ${delay.median} ms)`, delay.slowest, 100, 'ms'],
    ['from a tune to a recording until its picture is on the page, the slowest of ten', tune, 2000, 'ms'],
  ]
}

await openBrowser()
try {
  const table = await rows()
  for (const [figure, measured, most, unit] of table) {
    console.log(`${figure}: ${round(measured)} ${unit}, wanted <= ${most} ${unit}${measured > most ? '  MISSED' : ''}`)
  }
  process.exitCode = table.some(([, measured, most]) => measured > most) ? 1 : 0
} finally {
  await closeBrowser()
  endServers()
}
