// SPDX-License-Identifier: MIT
// The page and its server: the page shows at once when the server is gone, reconnects by itself, and learns what
// happened meanwhile.
import assert from 'node:assert/strict'
import {mkdtemp, rm, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {afterEach, test} from 'node:test'
import {connect} from '../../virtualtv/console/client/client.js'
import {serve} from '../client/support/server.js'
import {until} from '../client/support/wait.js'
import {elsewhere, onSite} from '../site/support/bridge.js'
import {brokenConnection, Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(async () => {
  if (!shown) return
  shown.tolerated = new RegExp(`${brokenConnection.source}|status of 401`)
  await shown.close()
  shown = undefined
})

/** Starts a server that requires a token. */
async function serveWithToken(context, token = 's3cret') {
  const folder = await mkdtemp(join(tmpdir(), 'emp-window-'))
  context.after(() => rm(folder, {recursive: true}))
  await writeFile(join(folder, 'token'), `${token}\n`, {mode: 0o600})
  return serve({options: ['--token', join(folder, 'token')]})
}

const mode = () => shown.page.getByLabel('TV mode').inputValue()

test('a server that was ended and started again: said at once, and the state is right again', {skip: elsewhere('a tab has no server that ends')}, async () => {
  shown = await Console.open()
  await shown.tv.window.SetTVMode(2)
  await until(async () => await mode() === '1')
  await shown.tv.close()
  await shown.server.kill()
  await shown.page.getByText('Disconnected, reconnecting').waitFor()
  shown.server = await serve({port: shown.server.port})
  await shown.page.getByText(/\d+ engines?, \d+ clients?/).waitFor()
  await until(async () => await mode() === '0')
  shown.tv = await connect(shown.server.address)
  await shown.tv.window.SetTVMode(4)
  await until(async () => await mode() === '2')
})

test('what is done, who comes and a server that goes move nothing', async () => {
  shown = await Console.open()
  const {page} = shown
  const places = () => page.locator('emp-head label, section:visible, .frame, emp-foot').evaluateAll(parts => parts.map(part => {
    const {x, y, width, height} = part.getBoundingClientRect()
    return [part.id || part.className || part.localName, x, y, width, height]
  }))
  const before = await places()
  await page.getByRole('button', {name: 'Channel up'}).click()
  await page.getByRole('button', {name: 'Copy line'}).waitFor()
  assert.deepEqual(await places(), before)
  const others = await Promise.all(Array.from({length: 10}, () => shown.connect()))
  await Promise.all(others.map(other => other.window.GetTVMode()))
  await page.getByText('11 engines, 12 clients').waitFor()
  assert.deepEqual(await places(), before)
  await Promise.all(others.map(other => other.close()))
  if (onSite) return  // a tab has no server that could go away
  await shown.server.kill()
  await page.getByText('Disconnected, reconnecting').waitFor()
  assert.deepEqual(await places(), before)
})

test('what is done without a connection fails at once and is not done later', {skip: elsewhere('a tab has no server that ends')}, async () => {
  shown = await Console.open()
  await shown.tv.close()
  await shown.server.kill()
  await shown.page.getByText('Disconnected, reconnecting').waitFor()
  await shown.page.getByRole('button', {name: 'Channel up'}).click()
  await shown.page.locator('emp-foot').getByText('there is no connection').waitFor()
  shown.server = await serve({port: shown.server.port})
  await shown.page.getByText(/\d+ engines?, \d+ clients?/).waitFor()
  shown.tv = await connect(shown.server.address)
  await shown.page.getByLabel('TV mode').selectOption('Cable')
  await until(async () => await mode() === '1')
  assert.equal((await shown.tv.why(1)).name, 'SetTVMode')
})

/** Makes the set stop answering. @return a function that makes it continue */
async function stopSet() {
  if (!onSite) {
    shown.server.signal('SIGSTOP')
    return () => shown.server.signal('SIGCONT')
  }
  await shown.page.workers()[0].evaluate(() => { setTimeout(() => Atomics.wait(new Int32Array(new SharedArrayBuffer(4)), 0, 0, 5000)) })
  return () => {}  // it continues by itself
}

test('a deed without an answer is told', async () => {
  shown = await Console.open()
  const foot = shown.page.locator('emp-foot')
  const goOn = await stopSet()
  try {
    await shown.page.getByRole('button', {name: 'Channel up'}).click()
    await foot.getByText('has no answer yet').waitFor()
  } finally {
    await goOn()
  }
  await foot.getByText('has no answer yet').waitFor({state: 'detached'})
  await foot.getByText('SetChannel_Seek').waitFor()
})

test('two pages stay in step', {skip: elsewhere('each tab has a set of its own')}, async () => {
  shown = await Console.open()
  const other = await Console.open({server: shown.server})
  await shown.page.getByLabel('TV mode').selectOption('Satellite')
  await until(async () => await other.page.getByLabel('TV mode').inputValue() === '2')
  await other.page.getByLabel('TV mode').selectOption('Cable')
  await until(async () => await mode() === '1')
  await other.page.context().close()
  await other.tv.close()
  assert.deepEqual(other.errors, [])
})

test('a token comes by the address, leaves it, and stays for the tab', {skip: elsewhere('a tab wants no token')}, async context => {
  const server = await serveWithToken(context)
  shown = await Console.open({server, token: 's3cret'})
  assert.equal(new URL(shown.page.url()).hash, '')
  await shown.page.reload()
  await shown.page.getByText(/\d+ engines?, \d+ clients?/).waitFor()
})

test('a token may have per cent signs', {skip: elsewhere('a tab wants no token')}, async context => {
  const server = await serveWithToken(context, '100%s3cret')
  shown = await Console.open({server, token: '100%s3cret'})
  assert.equal(new URL(shown.page.url()).hash, '')
})

test('without the token the page says what it wants', {skip: elsewhere('a tab wants no token')}, async context => {
  const server = await serveWithToken(context)
  shown = await Console.open({server, token: 'wrong', isLetIn: false})
  await shown.page.getByText('#token=').waitFor()
})

test('a browser that forbids storage shows the TV all the same', async () => {
  shown = await Console.open({
    before: () => {
      for (const name of ['localStorage', 'sessionStorage']) {
        Object.defineProperty(globalThis, name, {get() { throw new DOMException('forbidden', 'SecurityError') }})
      }
    },
  })
  await shown.page.getByLabel('TV mode').selectOption('Cable')
  await until(async () => (await shown.tv.state()).windows.main.tvMode.antenna === 1)
})
