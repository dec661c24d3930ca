// SPDX-License-Identifier: MIT
// The time from requesting a TV to its first reply, in processes and pages that have not created one before.
import {execFileSync} from 'node:child_process'
import {urlOf} from '../support/package.js'

const tries = 12

/** The measured code. Runs in Node and in pages. */
const body = `
  const start = performance.now()
  const tv = await createTv()
  await tv.window.GetTVMode()
  const time = performance.now() - start`

const script = `import {createTv} from '${urlOf('client.js')}'
  const before = process.cpuUsage()
  ${body}
  const {user, system} = process.cpuUsage(before)
  console.log(JSON.stringify({time, processor: (user + system) / 1000}))
  await tv.close()`

function once() {
  return JSON.parse(execFileSync(process.execPath, ['--input-type=module', '-e', script], {encoding: 'utf8'}))
}

const byModule = `<!doctype html><script type="module">
  import {createTv} from '/package/client.js'
  ${body}
  globalThis.time = time
</script>`
const byScript = `<!doctype html>
  <script>globalThis.start = performance.now()</script>
  <script src="/package/tv.js" data-name="tvWindow"></script>
  <script>
    tvWindow.GetTVMode()
    globalThis.time = performance.now() - start
  </script>`

/** Measures in a new page of an open browser, with nothing in its cache. */
async function shown(browser, site, html) {
  site.pages.set('/start', html)
  const page = await browser.page()
  try {
    await page.goto(`${site.address}/start`)
    const time = await page.waitForFunction(() => globalThis.time)
    return {time: await time.jsonValue()}
  } finally {
    await page.context().close()
  }
}

const sorted = numbers => numbers.sort((left, right) => left - right)

/** @return {time, median, processor} in milliseconds: the least and the median time, and the least processor time */
async function several(run) {
  const all = []
  for (let at = 0; at < tries; ++at) all.push(await run())
  const times = sorted(all.map(({time}) => time))
  return {time: times[0], median: times[times.length >> 1], processor: sorted(all.map(({processor}) => processor))[0]}
}

export const startInNode = () => several(once)
export const startInPage = (browser, site) => several(() => shown(browser, site, byModule))
export const startOfScript = (browser, site) => several(() => shown(browser, site, byScript))
