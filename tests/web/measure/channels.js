// SPDX-License-Identifier: MIT
// The cost of a list of 20,000 channels on the page: tasks while it is scrolled and searched.

const count = 20_000

/** A channel list of `count` services. */
function list() {
  return Array.from({length: count}, (_, at) =>
    `Station ${at + 1}:${10714 + at % 1000}:HC56M2S0:S19.2E:22000:${at % 8000 + 32}:${at % 8000 + 33}=eng@3:0:0:${at + 1}:1:${at % 1000}:0`).join('\n')
}

/**
 * Imports the list, scrolls to its end and back, and types a search of ten letters, one key in each frame.
 * @param page  shows the TV @param tv  a client of it
 * @return {{tasks: {scrolling: number[], searching: number[]}, frames: {scrolling: number, searching: number}, found: number}} milliseconds: tasks longer
 *   than 50, the longest time between two frames, and the time from the last key until the result is shown
 */
export async function channelsCost(page, tv) {
  await tv.import(list(), {format: 'vdr'})
  await page.getByRole('tab', {name: 'Channels', exact: true}).click()
  const pane = page.getByRole('tabpanel', {name: 'Channels'})
  await pane.getByLabel('Search channels').fill('')
  await pane.getByText(`${count} channels`, {exact: true}).waitFor()
  await page.evaluate(() => {
    globalThis.measured = async work => {
      const tasks = []
      const observer = new PerformanceObserver(entries => tasks.push(...entries.getEntries().map(({duration}) => Math.round(duration))))
      observer.observe({type: 'longtask'})
      let longest = 0
      let before = performance.now()
      const frame = () => new Promise(resolve => requestAnimationFrame(now => {
        longest = Math.max(longest, now - before)
        before = now
        resolve()
      }))
      await frame()
      longest = 0
      await work(frame)
      for (let more = 0; more < 10; ++more) await frame()
      observer.takeRecords().forEach(({duration}) => tasks.push(Math.round(duration)))
      observer.disconnect()
      return {tasks, longest: Math.round(longest)}
    }
  })
  const scrolling = await page.evaluate(() => globalThis.measured(async frame => {
    const list = document.querySelector('emp-channels emp-long-list')
    for (const step of [997, -1499]) {
      for (let at = 0; at < 120; ++at) {
        list.scrollTop += step * (at % 10)
        await frame()
      }
    }
  }))
  const searching = await page.evaluate(() => globalThis.measured(async frame => {
    const field = document.querySelector('emp-channels input[type="search"]')
    for (const letter of 'station 19') {
      field.value += letter
      field.dispatchEvent(new Event('input', {bubbles: true}))
      for (let more = 0; more < 4; ++more) await frame()
    }
  }))
  const begun = performance.now()
  const {total} = await tv.services({text: 'station 19', limit: 0})
  await pane.getByText(`${total} channels`, {exact: true}).waitFor()
  return {
    tasks: {scrolling: scrolling.tasks, searching: searching.tasks}, frames: {scrolling: scrolling.longest, searching: searching.longest},
    found: Math.round(performance.now() - begun),
  }
}
