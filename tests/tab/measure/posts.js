// SPDX-License-Identifier: MIT
// The durations of posts to a set in memory, each compared with the same post natively.
import {urlOf} from '../support/package.js'
import {posterOf} from '../support/poster.js'
import {nativePoster} from './native.js'

const rounds = 7  // of both, alternately
const services = 10_000

const line = at => `Channel ${at};Net:578000:I999C23D0M64T8G4Y0:T:27500:101:102=eng:0:0:${at + 1}:9018:4100:0`
const list = Array.from({length: services}, (_, at) => line(at)).join('\n')

const message = (method, params) => JSON.stringify({jsonrpc: '2.0', id: 1, method, params})
const oneCall = message('window.GetTVMode')
const fullList = message('window.GetFullChannelList')
const importing = message('tv.import', {content: list, name: 'list'})

export async function inNode() {
  return posterOf(await import(urlOf('module.js')), new URL(urlOf('emp-window.wasm')))
}

const html = `<!doctype html><script type="module">
  import * as module from '/package/module.js'
  import {posterOf} from '/tab/poster.js'
  globalThis.poster = await posterOf(module, '/package/emp-window.wasm')
</script>`

export async function inPage(browser, site) {
  site.pages.set('/posts', html)
  const page = await browser.page()
  await page.goto(`${site.address}/posts`)
  await page.waitForFunction(() => globalThis.poster)
  return {
    post: message => page.evaluate(message => poster.post(message), message),
    time: message => page.evaluate(message => poster.time(message), message),
    end: () => page.context().close(),
  }
}

async function prepare(poster) {
  const {result, error} = JSON.parse(await poster.post(importing))
  if (result?.imported !== services) throw new Error(`a list of ${services} services is wanted: ${JSON.stringify(result ?? error)}`)
}

/** Requires equal answers; otherwise the times are not comparable. */
async function requireSame(poster, native, message) {
  const [one, other] = [await poster.post(message), await native.post(message)]
  if (one !== other) throw new Error(`the module answers ${one.slice(0, 200)}, natively it is ${other.slice(0, 200)}`)
  if (JSON.parse(one).error) throw new Error(one)
}

/** @return the least times of both, in nanoseconds */
async function held(poster, native, message) {
  const times = {module: Infinity, native: Infinity}
  for (let round = 0; round < rounds; ++round) {
    times.native = Math.min(times.native, await native.time(message))
    times.module = Math.min(times.module, await poster.time(message))
  }
  return times
}

/** @return {call, list}, each {module, native} in nanoseconds */
export async function postTimes(poster, program) {
  const native = nativePoster(program)
  try {
    await requireSame(poster, native, oneCall)
    const call = await held(poster, native, oneCall)
    await prepare(poster)
    await prepare(native)
    await requireSame(poster, native, fullList)
    return {call, list: await held(poster, native, fullList)}
  } finally {
    native.end()
    await poster.end()
  }
}
