// SPDX-License-Identifier: MIT
// The cost of loading the page, and how soon it shows changes.
import {connect} from '../../../virtualtv/console/client/client.js'

const median = values => [...values].sort((one, other) => one - other)[Math.floor(values.length / 2)]

/** @return the bytes transferred for the page, and the median of milliseconds from the request until it shows the TV */
export async function loadCost(page, address, times = 7) {
  const usable = []
  let bytes = 0
  await page.addInitScript(() => {
    new MutationObserver((_, observer) => {
      const isUsable = /\d+ clients?/.test(document.querySelector('emp-head')?.textContent ?? '') && document.querySelector('[role="img"]')
      if (!isUsable) return
      observer.disconnect()
      requestAnimationFrame(() => performance.mark('usable'))
    }).observe(document, {subtree: true, childList: true, characterData: true})
  })
  for (let time = 0; time < times; ++time) {
    const answers = []
    const note = response => answers.push(response)
    page.on('response', note)
    await page.goto(address, {waitUntil: 'networkidle'})
    await page.waitForFunction(() => performance.getEntriesByName('usable').length > 0)
    page.off('response', note)
    usable.push(await page.evaluate(() => performance.getEntriesByName('usable')[0].startTime))
    const sizes = await Promise.all(answers.map(answer => answer.request().sizes()))
    bytes = sizes.reduce((sum, {responseBodySize, responseHeadersSize}) => sum + responseBodySize + responseHeadersSize, 0)
  }
  return {bytes, usable: median(usable)}
}

/** The milliseconds from a command until the page shows its effect, while 200 events a second arrive: the longest of
 *  `times` runs. */
export async function eventDelay(page, address, times = 40) {
  await page.goto(address)
  await page.getByText(/\d+ clients?/).waitFor()
  const tv = await connect(address)
  let number = 0
  const flood = setInterval(() => { for (let one = 0; one < 2; ++one) tv.setSetting('db/measure', ++number).catch(() => {}) }, 10)
  const delays = []
  try {
    for (let time = 0; time < times; ++time) {
      const mode = time % 2 === 0 ? {name: 1, number: 2} : {name: 0, number: 1}
      const shown = page.evaluate(wanted => new Promise(resolve => {
        const select = document.querySelector('emp-head select')
        const look = () => select.value === wanted ? resolve(Date.now()) : requestAnimationFrame(look)
        look()
      }), String(mode.name))
      await page.evaluate(() => 0)
      const begun = Date.now()
      await tv.window.SetTVMode(mode.number)
      delays.push(await shown - begun)
    }
  } finally {
    clearInterval(flood)
    await tv.close()
  }
  return {slowest: Math.max(...delays), median: median(delays), events: number}
}
