// SPDX-License-Identifier: MIT
// The cost of a timeline with 10,000 entries: the longest tasks while it is scrolled and filtered, and while events
// arrive.

/** Records long tasks from now on. @return {Promise<() => Promise<number[]>>} a function that ends this and returns
 *  their durations in ms */
async function longTasks(page) {
  await page.evaluate(() => {
    globalThis.longTasks = []
    globalThis.longTaskObserver = new PerformanceObserver(list => globalThis.longTasks.push(...list.getEntries().map(({duration}) => duration)))
    globalThis.longTaskObserver.observe({type: 'longtask'})
  })
  return () => page.evaluate(() => {
    globalThis.longTasks.push(...globalThis.longTaskObserver.takeRecords().map(({duration}) => duration))
    globalThis.longTaskObserver.disconnect()
    return globalThis.longTasks
  })
}

const frame = page => page.evaluate(() => new Promise(resolve => requestAnimationFrame(() => requestAnimationFrame(resolve))))

/** Fills the timeline of the page with 10,000 entries. */
async function fill(page, tv) {
  const count = () => page.evaluate(async () => (await import('/page/timeline-log.js')).timeline.entries.length)
  while (await count() < 10_000) {
    await Promise.all(Array.from({length: 250}, (_, at) => tv.Execute(['GetTVMode', 'GetSource', 'SetChannel', 'GetResolution'][at % 4], 1 + at % 9, 0)))
    await frame(page)
  }
}

/** @return the longest task of each kind, in ms; 0 where none took 50 */
export async function timelineCost(page, tv) {
  await fill(page, tv)
  const list = page.getByRole('listbox', {name: 'Timeline entries'})
  const measured = async work => {
    const end = await longTasks(page)
    await work()
    await frame(page)
    return Math.max(0, ...await end())
  }
  const scrolling = await measured(async () => {
    await list.focus()
    for (let at = 0; at <= 60; ++at) {
      await list.evaluate((element, part) => { element.scrollTop = element.scrollHeight * part }, at / 60)
      await frame(page)
    }
  })
  const filtering = await measured(async () => {
    for (const text of ['S', 'Se', 'Set', 'GetCurrentServiceInfo', 'no such thing', '']) {
      await page.getByLabel('Filter by text').fill(text)
      await page.getByText(/^\d+ of \d+$/).waitFor()
      for (let count = 0; count < 10; ++count) await frame(page)
    }
  })
  let events = 0
  const arriving = await measured(async () => {
    const stop = tv.on('*', () => ++events)
    const end = Date.now() + 3000
    while (Date.now() < end) {
      await Promise.all(Array.from({length: 4}, () => tv.window.SetChannel(3, 0)))
      await new Promise(resolve => setTimeout(resolve, 100))
    }
    stop()
  })
  return {entries: 10_000, scrolling, filtering, arriving, eventsPerSecond: Math.round(events / 3)}
}
