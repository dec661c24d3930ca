// SPDX-License-Identifier: MIT
// TVs in memory in a real browser: in the page, in a worker, and through the script.
import assert from 'node:assert/strict'
import {readFile} from 'node:fs/promises'
import {after, before, test} from 'node:test'
import {page, useBrowser} from '../client/support/browser.js'
import {cases} from '../client/support/cases.js'
import {PackageSite, directory} from './support/package.js'

let site
useBrowser()
before(async () => {
  site = await new PackageSite().listen()
  const cases = '<!doctype html><script type="module" src="/tab/inPage.js"></script>'
  site.pages.set('/module', cases)
  site.pages.set('/script', `${cases}<script src="/package/tv.js"></script>`)
})
after(() => site.close())

for (const [maker, where, path, some] of [['createTv', 'in the page', '/module', cases.all],
  ['worker', 'in a worker', '/module', cases.client], ['script', 'by the script', '/script', cases.all]]) {
  for (const {name, expected} of some) {
    test(`${name}, ${where}`, async () => {
      await page.goto(site.address + path)
      await page.waitForFunction(() => globalThis.runNamed)
      assert.deepEqual(await page.evaluate(([...given]) => globalThis.runNamed(...given), [name, maker]), expected)
    })
  }
}

test('the module is compiled while it comes, and from a server that does not say what it is', async () => {
  await page.goto(site.address)
  const modeOf = given => page.evaluate(async module => {
    const {createTv} = await import('/package/client.js')
    const tv = await createTv(module && {module})
    const mode = await tv.window.GetTVMode()
    await tv.close()
    return mode
  }, given)
  assert.equal(await modeOf(), 1)
  const body = await readFile(`${directory}/emp-window.wasm`)
  site.pages.set('/untyped', {headers: {'Content-Type': 'application/octet-stream'}, body})
  assert.equal(await modeOf('/untyped'), 1)
  // Servers of single-page apps answer with a page when a file does not exist.
  site.pages.set('/fallback.wasm', '<!doctype html><title>app</title>')
  await assert.rejects(modeOf('/fallback.wasm'),
    /EmpTvError: the TV in memory: .* \(\/fallback.wasm\); that is no WebAssembly: the option module names where emp-window.wasm is/)
  await assert.rejects(modeOf('/none.wasm'), /EmpTvError: the TV in memory: .* 404 \(\/none.wasm\)/)
})

test('where a policy forbids to compile, the error says what the page wants', async () => {
  site.pages.set('/strict', {headers: {'Content-Security-Policy': "script-src 'self'"}, body: '<!doctype html><title>strict</title>'})
  await page.goto(`${site.address}/strict`)
  const message = await page.evaluate(() => import('/package/client.js').then(({createTv}) => createTv())
    .then(() => 'made', error => `${error.name} ${error.what}: ${error.message}`))
  assert.match(message, /^EmpTvError module: .*; the page's Content-Security-Policy wants 'wasm-unsafe-eval' in script-src$/)
  site.pages.set('/allowing', {headers: {'Content-Security-Policy': "script-src 'self' 'wasm-unsafe-eval'"}, body: ''})
  await page.goto(`${site.address}/allowing`)
  assert.equal(await page.evaluate(async () => {
    const {createTv} = await import('/package/client.js')
    return (await createTv()).window.GetTVMode()
  }), 1)
})

test('a worker whose TV can not be made, and one whose TV is closed, end the connection with the reason', async () => {
  await page.goto(site.address)
  const outcome = await page.evaluate(async () => {
    const {connect, createTv} = await import('/package/client.js')
    const {PortSocket, servePort} = await import('/package/port.js')
    const tv = await createTv()
    await tv.close()
    const {port1, port2} = new MessageChannel()
    servePort(tv, port2)
    return connect(() => new PortSocket(port1)).then(() => 'connected', error => `${error.name}: ${error.message}`)
  })
  assert.equal(outcome, 'EmpConnectionError: the TV in memory can\'t be reached: the TV in memory was closed')
})

test('a port whose other end is gone is closed nevertheless', async () => {
  await page.goto(site.address)
  const code = await page.evaluate(async () => {
    const {PortSocket} = await import('/package/port.js')
    const {port1, port2} = new MessageChannel()
    const socket = new PortSocket(port1)
    await new Promise(resolve => {
      socket.onopen = resolve
      port2.postMessage({open: true})
    })
    return new Promise(resolve => {
      socket.onclose = closed => resolve(closed.code)
      socket.close()
    })
  })
  assert.equal(code, 1006)
})
