// SPDX-License-Identifier: MIT
// The client in a real browser, in pages of a development server: the synchronous object and the module.
import assert from 'node:assert/strict'
import {afterEach, beforeEach, test} from 'node:test'
import {connect} from '../../virtualtv/console/client/client.js'
import {newTab, page, site, useBrowser} from './support/browser.js'
import {serve} from './support/server.js'
import {until} from './support/wait.js'

let server
let tv
let warnings
useBrowser()
beforeEach(async () => {
  await start()
  site.pages.set('/app', `<!doctype html><title>app</title>
    <script src="${server.address}/window.js?name=tvWindow&appId=com.example.guide"></script>
    <script>document.title = tvWindow.Execute('GetCurrentChannel_Name')</script>`)
  warnings = warningsOf(page)
})
afterEach(() => stop())

async function start(port) {
  server = await serve({port, options: ['--allow-origin', site.address]})
  tv = await connect(server.address)
}

async function stop(signal) {
  await tv.close()
  await server.kill(signal)
}

function warningsOf(one) {
  const texts = []
  one.on('console', message => message.type() === 'warning' && texts.push(message.text()))
  return texts
}

/** The sessions of pages, without the shared one and the test's own. */
const sessions = async () => (await tv.sessions()).filter(({session, shared}) => !shared && session !== tv.session)

test('the first line of an app calls the set', async () => {
  await page.goto(`${site.address}/app`)
  assert.equal(await page.title(), 'Lighthouse One')
  assert.deepEqual(await page.evaluate(() => [tvWindow.SetChannel(3, 0), tvWindow.GetCurrentChannel_Name(), tvWindow.isVirtual]),
    [1, 'Lighthouse News', true])
  assert.equal(await page.evaluate(() => tvWindow.Execute('NoSuchCommand')), undefined)
  assert.deepEqual(warnings, [])
})

test('hot reload keeps the object and its session', async () => {
  await page.goto(`${site.address}/app`)
  const [same, size] = await page.evaluate(async base => {
    tvWindow.FindChannel(0, 1)
    const {installWindow} = await import(`${base}/client.js`)
    const first = tvWindow
    const again = installWindow(globalThis, {address: base, name: 'tvWindow'})
    const script = document.createElement('script')
    script.src = document.querySelector('script').src
    await new Promise(resolve => {
      script.onload = resolve
      document.head.append(script)
    })
    return [again === first && tvWindow === first, tvWindow.GetChannel_Size()]
  }, server.address)
  assert.deepEqual([same, size], [true, 31])
  await until(async () => (await sessions()).every(({connected}) => connected), 'the page keeps its session')
  assert.equal((await sessions()).length, 1)
})

test('tabs have sessions of their own', async () => {
  const other = await newTab()
  for (const tab of [page, other]) await tab.goto(`${site.address}/app`)
  const size = () => tvWindow.GetChannel_Size()
  await page.evaluate(() => tvWindow.FindChannel(0, 1))
  assert.deepEqual([await page.evaluate(size), await other.evaluate(size)], [31, 0])
  assert.equal((await sessions()).length, 2)
  await other.close()
  await until(async () => (await sessions()).length === 1, 'a closed tab ends its session')
})

test('a reload is a new session, silently, and ends the one before', async () => {
  await page.goto(`${site.address}/app`)
  await page.evaluate(() => tvWindow.FindChannel(0, 1))
  const [{session}] = await sessions()
  await page.reload()
  assert.equal(await page.evaluate(() => tvWindow.GetChannel_Size()), 0)
  await until(async () => (await sessions()).length === 1, 'the old session has ended')
  assert.notEqual((await sessions())[0].session, session)
  assert.deepEqual(warnings, [])
})

test('while the page unloads a call throws', async () => {
  await page.goto(`${site.address}/app`)
  await page.evaluate(() => addEventListener('pagehide', () => {
    try {
      tvWindow.GetTVMode()
    } catch (error) {
      localStorage.setItem('thrown', `${error.name}: ${error.message}`)
    }
  }))
  await page.goto(site.address)
  assert.match(await page.evaluate(() => localStorage.getItem('thrown')), /^EmpConnectionError: .*while the page unloads/)
})

test('without the server a call throws; when it is back the next one works and warns', async () => {
  await page.goto(`${site.address}/app`)
  const {port} = server
  await stop('SIGKILL')
  const thrown = await page.evaluate(() => {
    try {
      return tvWindow.GetTVMode()
    } catch (error) {
      return `${error.name}: ${error.message}`
    }
  })
  assert.match(thrown, /^EmpConnectionError: .*can't be reached: .*--allow-origin http:/)
  await start(port)
  assert.equal(await page.evaluate(() => tvWindow.GetTVMode()), 1)
  assert.equal(warnings.filter(text => /^tvWindow: the session with the virtual TV was lost/.test(text)).length, 1)
})

test('the module connects, listens, and goes on when the server is back', async () => {
  await page.goto(site.address)
  const name = await page.evaluate(async base => {
    const {connect} = await import(`${base}/client.js`)
    globalThis.tv = await connect(base, {appId: 'com.example.guide'})
    globalThis.told = []
    await tv.on('service', event => told.push(event.state?.windows.main.service.name ?? event.after.service.name)).ready
    await tv.window.SetChannel(3, 0)
    return tv.window.GetCurrentChannel_Name()
  }, server.address)
  assert.equal(name, 'Lighthouse News')
  await page.waitForFunction(() => told.length === 2)
  await tv.window.SetChannel(5, 0)
  await page.waitForFunction(() => told.length === 3)
  assert.deepEqual(await page.evaluate(() => told), ['Lighthouse One', 'Lighthouse News', 'Ola Norte'])
  const {port} = server
  await stop('SIGKILL')
  await page.waitForFunction(() => !globalThis.tv.connected)
  await start(port)
  await page.waitForFunction(() => told.length === 4)
  assert.equal(await page.evaluate(() => told.at(-1)), 'Lighthouse One', 'the state of the new server')
  await tv.window.SetChannel(3, 0)
  await page.waitForFunction(() => told.at(-1) === 'Lighthouse News')
  assert.match(warnings.join(), /broke and is back, with a new session/)
})
