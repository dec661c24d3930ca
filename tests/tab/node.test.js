// SPDX-License-Identifier: MIT
// TVs in memory in Node: they do what any client can do, start from various data, and end.
import assert from 'node:assert/strict'
import {spawnSync} from 'node:child_process'
import {readFile} from 'node:fs/promises'
import {relative} from 'node:path'
import {test} from 'node:test'
import {fileURLToPath} from 'node:url'
import {cases, runCase} from '../client/support/cases.js'
import {EmpTvError, createTv, forgetTv, installWindow, urlOf} from './support/package.js'

const install = (target, tv, options) => installWindow(target, {tv, ...options})
const list = 'One;Test:11836:HC34M2O0S0:S19.2E:27500:101:102:104:0:28106:1:1101:0\n'

for (const one of cases.all) {
  test(`${one.name}, in memory`, async () => {
    assert.deepEqual(await runCase(one, createTv, install), one.expected)
  })
}

test('a TV starts from a snapshot and a list', async () => {
  const first = await createTv({list})
  await first.set('country', 42)
  const snapshot = await first.snapshot()
  await first.close()
  const tv = await createTv({snapshot})
  assert.deepEqual([await tv.get('country'), (await tv.services()).total], ['42', 1])
  await tv.close()
  const both = await createTv({snapshot, list: `${list}${list.replace('One', 'Two').replace('28106', '28107')}`})
  assert.deepEqual([await both.get('country'), (await both.services()).total], ['42', 2])
  await both.close()
})

/** An object that contains itself. */
function loop() {
  const object = {version: 1}
  object.state = object
  return object
}

test('what a TV can not start from is told by a named error that says what and where', async () => {
  const failures = [
    [{snapshot: {}}, 'snapshot', /^the TV in memory: snapshot: not a snapshot of a set/],
    [{snapshot: 'text'}, 'snapshot', /^the TV in memory: snapshot: /],
    [{snapshot: {version: 99}}, 'snapshot', /^the TV in memory: snapshot: version: .* 1, not 99$/],
    [{list: 'nothing that is known'}, 'list', /^the TV in memory: list: not a channel list of a known format/],
    [{list: '[One]\nSERVICE_ID = x\n'}, 'list', /^the TV in memory: list: no service in it: line \d+: ./],
    [{snapshot: ''}, 'snapshot', /^the TV in memory: snapshot: what tv.snapshot\(\) answers is wanted, not an empty text$/],
    [{snapshot: 5}, 'snapshot', /^the TV in memory: snapshot: what tv.snapshot\(\) answers is wanted, not 5$/],
    [{snapshot: null}, 'snapshot', /^the TV in memory: snapshot: what tv.snapshot\(\) answers is wanted, not null$/],
    [{snapshot: loop()}, 'snapshot', /^the TV in memory: snapshot: it can't be written as JSON: .*circular.*$/],
    [{snapshot: {version: 1n}}, 'snapshot', /^the TV in memory: snapshot: it can't be written as JSON: .*BigInt/],
    [{snapshot: {toJSON() {}}}, 'snapshot', /^the TV in memory: snapshot: not a snapshot of a set/],
    [{list: ''}, 'list', /^the TV in memory: list: not a channel list of a known format/],
    [{list: new Uint8Array([65])}, 'list', /^the TV in memory: list: content: a text is wanted, not an object$/],
    [{maximumMemory: 65536}, 'memory', /^the TV in memory: maximumMemory: 8388608 bytes at least are wanted, not 65536$/],
    [{maximumMemory: NaN}, 'memory', /^the TV in memory: maximumMemory: 8388608 bytes at least are wanted, not NaN$/],
    [{maximumMemory: '16 MB'}, 'memory', /^the TV in memory: maximumMemory: 8388608 bytes at least are wanted, not 16 MB$/],
    [{module: new URL('file:///no/such.wasm')}, 'module', /^the TV in memory: .*ENOENT.*such.wasm/],
    [{module: '/no/such.wasm'}, 'module', /^the TV in memory: .*ENOENT.*such.wasm/],
    [{module: new Uint8Array([1, 2, 3, 4])}, 'module', /^the TV in memory: .*can't be compiled: /],
    [{module: new Uint8Array([0, 97, 115, 109, 1, 0, 0, 0])}, 'module', /^the TV in memory: this WebAssembly is not the virtual TV's module/],
    [{persist: 'key'}, 'storage', /^persist 'key': a TV is kept in browsers alone/],
  ]
  for (const [options, what, message] of failures) {
    await assert.rejects(createTv(options), error => {
      assert.ok(error instanceof EmpTvError, String(error))
      assert.deepEqual([error.name, error.what], ['EmpTvError', what])
      assert.match(error.message, message)
      return true
    })
  }
  for (const options of [null, 'list.conf', 5, []]) {
    await assert.rejects(createTv(options), {name: 'TypeError',
      message: `an object with the options of createTv is wanted, not '${String(options)}'`})
  }
  assert.throws(() => installWindow({}), /a name is wanted/)
  await assert.rejects(createTv({persist: ''}), /a text is wanted as the key of persist/)
  await assert.rejects(forgetTv('key'), {name: 'EmpTvError', what: 'storage'})
  assert.throws(() => installWindow({}, {tv: {}, name: 'tvWindow'}), /a tv that createTv has made is wanted/)
})

test('the module is taken from where it is said to be: a path, an address, its bytes', async () => {
  const file = fileURLToPath(urlOf('emp-window.wasm'))
  for (const module of [file, relative('', file), urlOf('emp-window.wasm'), new URL(urlOf('emp-window.wasm')), await readFile(file)]) {
    const tv = await createTv({module})
    assert.equal(await tv.window.GetTVMode(), 1)
    await tv.close()
  }
})

/** The bytes of the module with another version number. */
async function moduleOf(version) {
  const bytes = await readFile(new URL(urlOf('emp-window.wasm')))
  const own = JSON.parse(await readFile(new URL(urlOf('package.json')))).version
  const at = bytes.indexOf(`emp-window ${own}`)
  assert.ok(at > 0 && version.length === own.length)
  bytes.write(version, at + 'emp-window '.length)
  return bytes
}

test('module, client and package are of one version, and a module of another one is told', async () => {
  const {version} = JSON.parse(await readFile(new URL(urlOf('package.json'))))
  const imports = WebAssembly.Module.imports(await WebAssembly.compile(await readFile(new URL(urlOf('emp-window.wasm')))))
  assert.ok(imports.some(({module}) => module === `emp-window ${version}`), JSON.stringify(imports))
  await assert.rejects(createTv({module: await moduleOf('0.9.9')}), {name: 'EmpTvError', what: 'module',
    message: `the TV in memory: the virtual TV's module is of version 0.9.9, the client of ${version}`})
})

test('a line of the shell that wants a file is told what there is instead', async () => {
  const tv = await createTv()
  const reason = 'a TV in memory reaches no files; tv.import, tv.restore and tv.check take what is in one, tv.snapshot answers it'
  for (const [line, action] of [['.import a', 'read'], ['.restore a', 'read'], ['.source a', 'read'], ['.snapshot a', 'write']]) {
    assert.deepEqual(await tv.run(line), [`error: cannot ${action} a: ${reason}`])
  }
  await tv.close()
})

test('without waiting, latencies only move the clock of the set', async () => {
  const tv = await createTv({wait: false})
  const tvWindow = installWindow({}, {tv, name: 'tvWindow'})
  await tv.set('latency.IServiceNavigation::GetTvMode', 60_000)
  const start = performance.now()
  assert.deepEqual([await tv.window.GetTVMode(), tvWindow.GetTVMode()], [1, 1])
  assert.ok(performance.now() - start < 20_000)
  await tv.close()
})

test('a TV is there however long something else holds the process up', async context => {
  const {clientOf, makeSet} = await import(urlOf('memory.js'))
  const {load} = await import(urlOf('load.js'))
  const module = await load()
  const due = new Set()  // not the test runner's mock timers: each version of Node enables them in its own way
  context.mock.method(globalThis, 'setTimeout', run => due.add(run) && run)
  context.mock.method(globalThis, 'clearTimeout', run => due.delete(run))
  const {tv, opened} = clientOf(makeSet(module, {}))
  await Promise.resolve()
  await Promise.resolve()
  for (const run of [...due]) run()
  await opened
  assert.equal(await tv.window.GetTVMode(), 1)
  await tv.close()
})

test('where the TV of an object was closed, the next one of that name is on another TV', async () => {
  const target = {}
  for (let times = 0; times < 2; ++times) {
    const tv = await createTv()
    const tvWindow = installWindow(target, {tv, name: 'tvWindow'})
    assert.equal(tvWindow, target.tvWindow)
    assert.equal(installWindow(target, {tv, name: 'tvWindow'}), tvWindow)
    assert.equal(tvWindow.GetTVMode(), 1)
    await tv.close()
  }
})

test('an object on a TV that was closed throws', async () => {
  const tv = await createTv()
  const tvWindow = installWindow({}, {tv, name: 'tvWindow'})
  await tv.close()
  assert.throws(() => tvWindow.GetTVMode(), {name: 'EmpConnectionError', message: 'the TV in memory was closed', sent: false})
})

test('a TV that is left open does not keep the process', () => {
  const script = `import {createTv} from '${urlOf('client.js')}'; console.log(await (await createTv()).window.GetTVMode())`
  const {stdout, status} = spawnSync(process.execPath, ['--input-type=module', '-e', script], {timeout: 60_000})
  assert.deepEqual([stdout.toString(), status], ['1\n', 0])
})

test('a TV that gets no more memory says so, and goes on', async () => {
  const lines = Array.from({length: 40_000}, (_, at) =>
    `Channel ${at};Test:${10_700 + at % 1000}:HC34M2O0S0:S19.2E:27500:101:102:104:0:${at + 1}:1:1101:0`)
  for (const megabytes of [8, 9, 10, 12, 16]) {
    const maximumMemory = megabytes * 1024 * 1024
    const tv = await createTv({maximumMemory})
    for (const count of [10_000, 20_000, 40_000]) {
      const list = lines.slice(0, count).join('\n')
      await assert.rejects(tv.import(list), / memory/)
      await assert.rejects(createTv({list, maximumMemory}), {name: 'EmpTvError', what: 'memory'})
      assert.equal((await tv.services({limit: 0})).total, 81)
    }
    assert.equal(await tv.window.GetTVMode(), 1)
    await tv.close()
  }
})
