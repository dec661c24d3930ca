// SPDX-License-Identifier: MIT
// Apps in frames of the site's page, which call the set in its tab synchronously.
import assert from 'node:assert/strict'
import {mkdirSync, writeFileSync} from 'node:fs'
import {join} from 'node:path'
import {test} from 'node:test'
import {ask, base, copyOfSite, open, ready, serve, startZapper, useVisits} from './support/visit.js'

useVisits()

test('an app is on the set that the page shows, and its calls answer at once', async () => {
  await serve()
  const page = await open()
  const zapper = await startZapper(page)
  const answers = await zapper.evaluate(() => [tvWindow.SetChannel(3, 0), tvWindow.GetCurrentChannel_Major()])
  assert.deepEqual(answers, [1, 3])
  await page.locator('emp-timeline').getByText('GetCurrentChannel_Major').locator('visible=true').first().waitFor()
  assert.equal((await ask(page, 'tv.state')).windows.main.service.major, 3)
})

test('an answer that is larger than the memory that is shared arrives whole', async () => {
  await serve()
  const page = await open()
  const zapper = await startZapper(page)
  const list = Array.from({length: 1500}, (_, at) => `Station ${at}:${10714 + at}:HC56M2S0:S19.2E:22000:33:34=eng@3:0:0:${at + 1}:1:1:0`).join('\n')
  await ask(page, 'tv.import', {content: list, format: 'vdr', name: 'list'})
  const {text, again} = await zapper.evaluate(() => ({text: tvWindow.GetFullChannelList(), again: tvWindow.GetFullChannelList()}))
  assert.ok(text.length > 65536, `${text.length}`)
  assert.equal(again, text)
  assert.match(text, /Station 1499/)
})

test('a call that takes its time blocks the app as long', async () => {
  await serve()
  const page = await open()
  const zapper = await startZapper(page)
  const {operations} = await ask(page, 'tv.operations')
  for (const {name} of operations) await ask(page, 'tv.set', {name: `latency.${name}`, value: 150})
  const took = await zapper.evaluate(() => {
    const start = performance.now()
    tvWindow.GetCurrentChannel_Major()
    return performance.now() - start
  })
  assert.ok(took >= 149, `it took ${took} ms`)
})

test("an app whose set's worker has died is told so, and the page too", async () => {
  await serve()
  const page = await open({mayComplain: true})
  const zapper = await startZapper(page)
  await page.evaluate(() => { globalThis[Symbol.for('emp-window/site')].patience = 300 })
  await page.workers()[0].evaluate(() => self.close()).catch(() => {})
  const failed = await zapper.evaluate(() => {
    try {
      return tvWindow.GetCurrentChannel_Major()
    } catch (error) {
      return [error.name, error.message, error.sent, error instanceof Error]
    }
  })
  assert.deepEqual(failed, ['EmpConnectionError', "the set's worker has not taken the call for 300 ms; reload the page", false, true])
  await page.getByRole('alert').getByText('The TV of this tab is not running').waitFor()
})

test('an engine ends with its frame', async () => {
  await serve()
  const page = await open()
  const zapper = await startZapper(page)
  await zapper.evaluate(() => tvWindow.GetCurrentChannel_Major())
  await page.getByText(/^1 engine,/).waitFor()
  await page.getByRole('button', {name: 'Close app'}).click()
  await page.getByText(/^0 engines,/).waitFor()
})

/** Writes a page with an app into a folder. */
function writeApp(folder, script) {
  mkdirSync(folder, {recursive: true})
  writeFileSync(join(folder, 'index.html'), `<!doctype html><title>app</title><script src="${script}?name=myTv"></script>`)
}

async function run(page, address) {
  await page.getByRole('tab', {name: 'App', exact: true}).click()
  await page.getByLabel('Address of the app').fill(address)
  await page.getByRole('tabpanel', {name: 'App'}).getByRole('button', {name: 'Run', exact: true}).click()
}

test('an app of one\'s own beneath the site runs; one beside it is told what it needs, and runs with the set on the page\'s thread', async () => {
  const site = copyOfSite()
  const beside = copyOfSite()
  writeApp(join(site, 'mine'), '../window.js')
  writeApp(join(beside, 'mine'), `${base}window.js`)
  const {origin} = await serve({[base]: site, '/': beside})
  const page = await open()
  await run(page, `${origin}${base}mine/index.html`)
  await page.getByText('Has the TV as', {exact: true}).waitFor()
  await run(page, `${origin}/mine/index.html`)
  await page.getByText('Cross-Origin-Embedder-Policy: require-corp').waitFor()
  await page.getByRole('link', {name: 'open this page with the set on its own thread'}).click()
  await ready(page)
  assert.equal(page.workers().length, 0)
  await run(page, `${origin}/mine/index.html`)
  await page.getByText('Has the TV as', {exact: true}).waitFor()
  const frame = page.frames().find(one => one.url() === `${origin}/mine/index.html`)
  assert.equal(await frame.evaluate(() => myTv.SetChannel(3, 0)), 1)
  await run(page, 'http://localhost:5173/')
  await page.getByText('since no server allows others').waitFor()
})

test('an app in a tab of its own is told where its TV is', async () => {
  const {origin} = await serve()
  const page = await open({address: `${origin}${base}page/apps/zapper/index.html`, isReady: false, mayComplain: true})
  assert.match(await page.evaluate(() => {
    try {
      return tvWindow.GetCurrentChannel_Major()
    } catch (error) {
      return `${error.name}: ${error.message}`
    }
  }), /^EmpConnectionError: no TV was found: the set is in the tab of .*tv\.js gives an app a set of its own$/)
})
