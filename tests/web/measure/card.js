// SPDX-License-Identifier: MIT
// The cost of drawing a test card, compared with a bare canvas of the same size that is filled as often.
import {cpus} from 'node:os'

const seconds = 4
const rate = 25
const size = {width: 960, height: 540}

/** Processor time used so far by the browser's processes for drawing, in ms. */
async function used(session) {
  const {processInfo} = await session.send('SystemInfo.getProcessInfo')
  return processInfo.filter(({type}) => type === 'renderer' || type === 'GPU').reduce((sum, {cpuTime}) => sum + cpuTime * 1000, 0)
}

/** Shows one thing alone on the page for some seconds, at 25 pictures a second. @return processor time in ms a
 *  second */
async function costOf(page, session, kind) {
  await page.evaluate(async ([what, {width, height}, pictures]) => {
    document.body.replaceChildren()
    if (what === 'nothing') return
    if (what === 'bare') {
      const canvas = document.createElement('canvas')
      Object.assign(canvas, {width, height})
      canvas.style.cssText = `display: block; width: ${width}px; height: ${height}px`
      document.body.append(canvas)
      const context = canvas.getContext('2d', {alpha: false})
      let number = 0
      setInterval(() => {
        context.fillStyle = `hsl(${++number % 360} 60% 50%)`
        context.fillRect(0, 0, width, height)
      }, 1000 / pictures)
      return
    }
    const {Picture} = await import(new URL('page/picture.js', location.href).href)
    const {shownIn} = await import(new URL('page/plane.js', location.href).href)
    const picture = new Picture()
    picture.style.cssText = `position: absolute; left: 0; top: 0; width: ${width}px; height: ${height}px`
    document.body.append(picture)
    picture.what = {shown: shownIn(globalThis.measuredState, {id: 'main', name: 'Main picture'}, () => undefined), isFrozen: false}
  }, [kind, size, rate])
  await page.waitForTimeout(500)
  const before = await used(session)
  const begun = Date.now()
  await page.waitForTimeout(seconds * 1000)
  return (await used(session) - before) * 1000 / (Date.now() - begun)
}

/**
 * Measures the card and the reference alternately in one browser, `times` each.
 * @param page  a page at `address` of the TV, in a browser where nothing else moves
 * @return {Promise<{card: number, bare: number, nothing: number, ratio: number, processors: number}>} the medians of
 *   processor time in ms a second, and the ratio of card and canvas
 */
export async function cardCost(page, address = new URL('.', page.url()).href, times = 3) {
  await page.emulateMedia({reducedMotion: 'no-preference'})
  await page.goto(address)
  await page.getByText(/\d+ clients?/).waitFor()
  await page.waitForFunction(() => document.querySelector('emp-picture')?.shown)
  await page.evaluate(async () => {
    const {store} = await import(new URL('page/store.js', location.href).href)
    globalThis.measuredState = store.get('state')
  })
  const session = await page.context().browser().newBrowserCDPSession()
  const costs = {card: [], bare: [], nothing: []}
  for (let time = 0; time < times; ++time) {
    for (const kind of ['nothing', 'bare', 'card']) {
      // A new document each time, so that nothing shown before continues to run.
      const state = await page.evaluate(() => globalThis.measuredState)
      await page.goto(address)
      await page.evaluate(given => { globalThis.measuredState = given }, state)
      costs[kind].push(await costOf(page, session, kind))
    }
  }
  await session.detach()
  const middle = values => [...values].sort((one, other) => one - other)[Math.floor(values.length / 2)]
  const [card, bare, nothing] = [costs.card, costs.bare, costs.nothing].map(middle)
  return {card, bare, nothing, ratio: card / bare, processors: cpus().length}
}
