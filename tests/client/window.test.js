// SPDX-License-Identifier: MIT
// The synchronous object of the set: in Node through a worker, in a page as a classic script.
import assert from 'node:assert/strict'
import {spawnSync} from 'node:child_process'
import {mkdtemp, rm, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {after, afterEach, beforeEach, test} from 'node:test'
import {EmpConnectionError, EmpRpcError, connect, installWindow} from '../../virtualtv/console/client/node.js'
import {startBreaker} from './support/breaker.js'
import {Page} from './support/page.js'
import {endServers, serve} from './support/server.js'
import {silenced, until} from './support/wait.js'

const client = new URL('../../virtualtv/console/client/node.js', import.meta.url)
let server
let tv
let target
beforeEach(async () => {
  server = await serve()
  tv = await connect(server.address)
  target = {}
})
afterEach(async () => {
  await tv.close()
  for (const object of Object.values(target)) object.close()
  await server.kill()
})
after(endServers)

const install = options => installWindow(target, {address: server.address, name: 'tvWindow', ...options})

test('Execute answers numbers and texts, and undefined where the engine refuses', () => {
  const tvWindow = install()
  assert.equal(target.tvWindow, tvWindow)
  assert.equal(tvWindow.isVirtual, true)
  assert.equal(tvWindow.Execute('SetChannel', 3, 0), 1)
  assert.equal(tvWindow.Execute('GetCurrentChannel_Name'), 'Lighthouse News')
  assert.equal(tvWindow.Execute('SetChannelByServiceid', 1152959734176350309n), 1)
  assert.equal(tvWindow.Execute('GetCurrentChannel_Name', undefined, undefined), 'Lighthouse One')
  assert.equal(tvWindow.Execute('GetChannel_ServiceId', 3, 0, undefined), tvWindow.Execute('GetChannel_ServiceId', 3, 0, ''))
  assert.equal(tvWindow.Execute('NoSuchCommand'), undefined)
  assert.throws(() => tvWindow.Execute('SetChannel', 1.5), error => error instanceof EmpRpcError && error.code === -32602)
})

test('each command is a function, and nothing else is', () => {
  const tvWindow = install()
  assert.equal(tvWindow.SetChannel(5, 0), 1)
  assert.equal(tvWindow.SetChannel, tvWindow.SetChannel)
  assert.deepEqual(['SetChannel' in tvWindow, 'SetChanel' in tvWindow], [true, false])
  assert.deepEqual([tvWindow.SetChanel, tvWindow.then, tvWindow[Symbol.iterator]], [undefined, undefined, undefined])
})

test('run speaks to the set', () => {
  const tvWindow = install()
  assert.deepEqual(tvWindow.run('.fault IServiceNavigation::GetTvMode result=0 times=1'), [])
  assert.equal(tvWindow.GetTVMode(), -1)
  assert.deepEqual(tvWindow.run('.get main.source'), ['main.source = 0'])
})

test('the same name has the same object and session; another name another; a name that is taken is refused', async () => {
  const tvWindow = install()
  tvWindow.FindChannel(0, 1)
  assert.equal(install(), tvWindow)
  assert.equal(tvWindow.GetChannel_Size(), 31)
  assert.equal(install({name: 'other'}).GetChannel_Size(), 0)
  assert.throws(() => installWindow({tvWindow: 3}, {address: server.address, name: 'tvWindow'}), /'tvWindow' is taken/)
  assert.throws(() => installWindow({}, {address: server.address}), /a name is wanted/)
})

test('the session belongs to a connection, stays while nothing is called, and ends with close', async () => {
  const mine = async () => (await tv.sessions()).filter(({session, shared}) => !shared && session !== tv.session)
  const tvWindow = install()
  tvWindow.GetTVMode()
  await until(async () => (await mine())[0]?.connected, 'the session is adopted')
  assert.equal((await mine()).length, 1)
  tvWindow.close()
  await until(async () => (await mine()).length === 0, 'the session has ended')
})

test('without a server calls throw; when it is back a new session opens and warns', async context => {
  const warnings = silenced('warn', context)
  const tvWindow = install()
  tvWindow.FindChannel(0, 1)
  await server.kill('SIGKILL')
  assert.throws(() => tvWindow.GetTVMode(), error => error instanceof EmpConnectionError && /can't be reached/.test(error.message))
  assert.deepEqual(warnings(), [])
  server = await serve({port: server.port})
  assert.equal(tvWindow.GetChannel_Size(), 0)
  assert.equal(warnings().length, 1)
  assert.match(warnings()[0], /^tvWindow: the session with the virtual TV was lost. A new one is open/)
  assert.equal(tvWindow.GetTVMode(), 1)
  assert.equal(warnings().length, 1)
})

test('a server that is not there yet is told on the console, and found by a later call', async context => {
  const warnings = silenced('warn', context)
  await server.kill('SIGKILL')
  const tvWindow = install()
  assert.match(warnings()[0], /^tvWindow: .*can't be reached: .*ECONNREFUSED/)
  server = await serve({port: server.port})
  assert.equal(tvWindow.GetTVMode(), 1)
  assert.equal(warnings().length, 1)
})

/** True when the error of a call says that the call may have run. */
function sentBy(call) {
  try {
    call()
  } catch (error) {
    assert.equal(error.name, 'EmpConnectionError')
    return error.sent
  }
  assert.fail('the call works')
}

test('an error says whether the call may have run, in Node and in a page', async context => {
  silenced('warn', context)
  const breaker = await startBreaker()
  const page = new Page()
  context.after(() => [breaker.stop(), page.close()])
  await page.load(`${server.address}/window.js`).catch(() => {})  // without a name it only defines its functions
  const inPage = page.run(`globalThis[Symbol.for('emp-window/2')].install({}, {address: '${breaker.address}', name: 'tvWindow'})`)
  const inNode = install({address: breaker.address})
  for (const tvWindow of [inNode, inPage]) {
    assert.equal(sentBy(() => tvWindow.GetTVMode()), true)
    assert.deepEqual([401, 403, 503, 500].map(status => sentBy(() => tvWindow.run(String(status)))), [false, false, false, true])
  }
  page.tell('pagehide')
  assert.equal(sentBy(() => inPage.run('')), false)
  page.tell('pageshow')
  await breaker.stop()
  assert.equal(sentBy(() => inPage.run('')), true, 'a page is not told')
  for (const tvWindow of [inNode, inPage]) {
    tvWindow.close()
    assert.equal(sentBy(() => tvWindow.run('')), false, 'no session can be opened')
  }
})

test('a server that wants a token gets it, and says so to who has none', async context => {
  const warnings = silenced('warn', context)
  const directory = await mkdtemp(join(tmpdir(), 'token-test-'))
  const file = join(directory, 'token')
  await writeFile(file, 's3cret\n', {mode: 0o600})
  const guarded = await serve({options: ['--token', file]})
  await rm(directory, {recursive: true})
  const {address} = guarded
  await assert.rejects(connect(address), {name: 'EmpConnectionError', status: 401, message: /a token is wanted/})
  const other = await connect(address, {token: 's3cret'})
  assert.equal(await other.window.GetTVMode(), 1)
  await other.close()
  assert.equal(install({address, token: 's3cret'}).GetTVMode(), 1)
  assert.throws(() => install({address, name: 'other', token: 'wrong'}).GetTVMode(),
    {name: 'EmpConnectionError', status: 401, message: /a token is wanted/})
  assert.equal(warnings().length, 1)
  await guarded.kill()
})

test('an object that is left open does not keep the process', () => {
  const script = `import {installWindow} from '${client}'
    console.log(installWindow(globalThis, {address: '${server.address}', name: 'tvWindow'}).GetTVMode())`
  const {stdout, status} = spawnSync(process.execPath, ['--input-type=module', '-e', script], {timeout: 20_000})
  assert.deepEqual([stdout.toString(), status], ['1\n', 0])
})

test('window.js puts the object of its query in place, before the next script runs', async () => {
  const page = new Page()
  const opened = []
  await tv.on('engine', event => opened.push(event.appId)).ready
  const address = `${server.address}/window.js?name=tvWindow&appId=com.example.guide`
  await page.load(address)
  assert.equal(page.run('tvWindow.SetChannel(3, 0)'), 1)
  assert.equal(page.run('tvWindow.Execute("GetCurrentChannel_Name")'), 'Lighthouse News')
  assert.deepEqual(page.sockets.map(socket => /[?]session=./.test(socket.url)), [true])
  const before = page.globals.tvWindow
  await page.load(address)
  assert.equal(page.globals.tvWindow, before)
  await until(() => opened.includes('com.example.guide'))
  page.close()
})

test('window.js wants a name, and in an app\'s own bundle does nothing by itself', async () => {
  const page = new Page()
  await assert.rejects(page.load(`${server.address}/window.js`), /the name is missing/)
  const text = await (await fetch(`${server.address}/window.js`)).text()
  page.run(text, 'http://localhost:5173/bundle.js?name=tvWindow')
  assert.equal(page.globals.tvWindow, undefined)
})

test('in a page too calls throw without a server and while it unloads, and a new session warns', async () => {
  const page = new Page()
  await page.load(`${server.address}/window.js?name=tvWindow`)
  page.tell('pagehide')
  assert.throws(() => page.run('tvWindow.GetTVMode()'), {name: 'EmpConnectionError', message: /while the page unloads/})
  page.tell('pageshow')
  assert.equal(page.run('tvWindow.GetTVMode()'), 1)
  await server.kill('SIGKILL')
  assert.throws(() => page.run('tvWindow.GetTVMode()'),
    {name: 'EmpConnectionError', message: /can't be reached: .*--allow-origin http:..localhost:5173/})
  server = await serve({port: server.port})
  assert.equal(page.run('tvWindow.GetTVMode()'), 1)
  assert.equal(page.warnings.length, 1)
  page.close()
})
