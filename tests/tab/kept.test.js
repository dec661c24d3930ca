// SPDX-License-Identifier: MIT
// A TV that is persisted in the browser: it survives a reload, only one tab can use it, and no stored data is lost.
import assert from 'node:assert/strict'
import {after, before, test} from 'node:test'
import {newTab, page, useBrowser} from '../client/support/browser.js'
import {until} from '../client/support/wait.js'
import {PackageSite} from './support/package.js'

let site
useBrowser()
before(async () => {
  site = await new PackageSite().listen()
  site.pages.set('/app', `<!doctype html><title>app</title><script type="module">
    import {createTv, forgetTv} from '/package/client.js'
    Object.assign(globalThis, {createTv, forgetTv})
  </script>`)
})
after(() => site.close())

async function open(tab = page) {
  await tab.goto(`${site.address}/app`)
  await tab.waitForFunction(() => globalThis.createTv)
}

/** Creates the persisted TV of a page. @return nothing, or the error */
const make = (tab = page, options = {persist: 'living room'}) => tab.evaluate(async given => {
  try {
    globalThis.tv = await createTv(given)
    return undefined
  } catch ({name, what, message, snapshot}) {
    return {name, what, message, snapshot}
  }
}, options)

const country = (tab = page) => tab.evaluate(() => tv.get('country'))

/** Runs a function on the object store, in a transaction. */
const onStore = (run, value) => page.evaluate(([source, given]) => new Promise((resolve, reject) => {
  const opening = indexedDB.open('emp-window', 1)
  opening.onupgradeneeded = () => opening.result.createObjectStore('sets')
  opening.onsuccess = () => {
    const request = new Function('store', 'value', `return ${source}`)(
      opening.result.transaction('sets', 'readwrite').objectStore('sets'), given)
    request.onsuccess = () => {
      opening.result.close()
      resolve(request.result)
    }
    request.onerror = () => reject(request.error)
  }
}), [run, value])
const kept = () => onStore("store.get('living room')")

test('what was awaited is there again after a reload, each time', async () => {
  await open()
  for (let number = 1; number <= 15; ++number) {
    assert.equal(await make(), undefined)
    if (number > 1) assert.equal(await country(), String(number - 1))
    await Promise.all([page.waitForEvent('load'), page.evaluate(value => {
      tv.set('country', value).then(() => location.reload())
    }, number)])
    await page.waitForFunction(() => globalThis.createTv)
  }
})

test('a change that the page makes while it goes is kept too', async () => {
  await open()
  await make()
  await page.evaluate(() => {
    addEventListener('beforeunload', () => { tv.set('country', 77) })
  })
  await page.reload()
  await page.waitForFunction(() => globalThis.createTv)
  await make()
  assert.equal(await country(), '77')
})

test('a change is saved by itself, and saved() and close() wait for it', async () => {
  await open()
  await make()
  await page.evaluate(() => tv.set('country', 41))
  await until(async () => JSON.stringify(await kept()).includes('"country":41'))
  const before = JSON.stringify(await kept())
  await page.evaluate(() => tv.set('country', 42).then(() => tv.saved()))
  const saved = JSON.stringify(await kept())
  assert.notEqual(saved, before)
  await page.evaluate(() => tv.set('country', 43).then(() => tv.close()).then(() => tv.close()))
  assert.notEqual(JSON.stringify(await kept()), saved)
  assert.equal(await make(), undefined)
  assert.equal(await country(), '43')
})

test('what is given counts where nothing is kept', async () => {
  const list = 'One;Test:11836:HC34M2O0S0:S19.2E:27500:101:102:104:0:28106:1:1101:0\n'
  const total = () => page.evaluate(async () => (await tv.services()).total)
  await open()
  await make(page, {persist: 'living room', list})
  assert.equal(await total(), 1)
  await page.evaluate(() => tv.close())
  await make(page, {persist: 'living room', list: list + list.replace('28106', '28107')})
  assert.equal(await total(), 1)
  await make(page, {persist: 'kitchen'})
  assert.ok(await total() > 1, 'another key is another TV')
})

test('a second tab is told, and has the TV when the first one is closed', async () => {
  await open()
  await make()
  await page.evaluate(() => tv.set('country', 42))
  const other = await newTab()
  await open(other)
  const failure = await make(other)
  assert.deepEqual([failure.name, failure.what], ['EmpTvError', 'in use'])
  assert.equal(failure.message, "persist 'living room': another tab has this TV; close that tab, or take another key")
  assert.match(await other.evaluate(() => forgetTv('living room').catch(error => error.message)), /another tab has this TV/)
  await page.evaluate(() => tv.close())
  assert.equal(await make(other), undefined)
  assert.equal(await country(other), '42')
})

test('a page that has the TV already is told so, and has it again once it is closed', async () => {
  await open()
  await make()
  const failure = await make()
  assert.deepEqual([failure.name, failure.what], ['EmpTvError', 'in use'])
  assert.equal(failure.message, "persist 'living room': this page has this TV already; close() it, or take another key")
  await page.evaluate(() => { tv.set('country', 42).then(() => tv.close()) })
  assert.equal(await make(), undefined, 'without waiting for its end')
  assert.equal(await country(), '42')
})

for (const [what, record, reason] of [
  ['of another version', {format: 1, snapshot: {version: 99}}, /its?|version: .* not 99/],
  ['that is no snapshot', {format: 1, snapshot: {broken: true}}, /not a snapshot of a set/],
  ['in another format', {format: 2, more: 'to come'}, /its format is 2, not 1/],
]) {
  test(`something kept ${what} is told, handed out, and stays as it is until it is removed`, async () => {
    await open()
    await onStore("store.put(value, 'living room')", record)
    for (let tries = 0; tries < 2; ++tries) {
      const failure = await make()
      assert.deepEqual([failure.name, failure.what], ['EmpTvError', 'kept'])
      assert.match(failure.message, reason)
      assert.match(failure.message, /It stays as it is; forgetTv\('living room'\) removes it$/)
      assert.deepEqual(failure.snapshot, record.snapshot ?? record)
      assert.deepEqual(await kept(), record)
    }
    await page.evaluate(() => forgetTv('living room'))
    assert.equal(await make(), undefined)
  })
}

test('a browser that is full keeps what was there; saving works again when there is room', async () => {
  const errors = []
  page.on('console', message => message.type() === 'error' && errors.push(message.text()))
  await open()
  await make()
  await page.evaluate(() => tv.set('country', 1).then(() => tv.saved()))
  const before = await kept()
  const failure = await page.evaluate(async () => {
    globalThis.put = IDBObjectStore.prototype.put
    IDBObjectStore.prototype.put = () => { throw new DOMException('there is no room', 'QuotaExceededError') }
    await tv.set('country', 2)
    return tv.saved().catch(({name, what, message}) => ({name, what, message}))
  })
  assert.deepEqual(failure, {name: 'EmpTvError', what: 'storage',
    message: "persist 'living room': the TV can't be saved, what was kept before is still there: there is no room"})
  assert.deepEqual(await kept().catch(error => error.message), before)
  assert.equal(await country(), '2', 'the TV goes on')
  assert.ok(errors.length >= 1 && errors.every(text => text.startsWith('emp-window: ')), String(errors))
  await page.evaluate(() => {
    IDBObjectStore.prototype.put = put
    return tv.saved()
  })
  assert.notDeepEqual(await kept(), before)
})

test('a browser without room is told by its own error, and saves when there is some', async () => {
  const session = await page.context().newCDPSession(page)
  const allow = more => session.send('Storage.overrideQuotaForOrigin', {origin: site.address, ...more})
  await allow({quotaSize: 1})
  await open()
  assert.equal(await make(), undefined)
  const failure = await page.evaluate(async () => {
    await tv.set('country', 2)
    return tv.saved().then(() => 'saved', ({name, what, message, cause}) => ({name, what, message, cause: cause.name}))
  })
  assert.deepEqual([failure.name, failure.what, failure.cause], ['EmpTvError', 'storage', 'QuotaExceededError'])
  assert.match(failure.message, /^persist 'living room': the TV can't be saved, what was kept before is still there: QuotaExceededError$/)
  assert.equal(await country(), '2', 'the TV goes on')
  await allow()
  await page.evaluate(() => tv.close())
  assert.equal(await make(), undefined)
  assert.equal(await country(), '2')
})

test('a page that has no origin, and so no storage, is told', async () => {
  const headers = {'Content-Security-Policy': 'sandbox allow-scripts'}
  site.pages.set('/sandbox', {headers, body: `<!doctype html><title>sandbox</title>
    <script type="module">globalThis.client = import('/package/client.js')</script>`})
  await page.goto(`${site.address}/sandbox`)
  const failure = await page.evaluate(async () => (await client).createTv({persist: 'living room'})
    .catch(({name, what, message}) => ({name, what, message})))
  assert.deepEqual([failure.name, failure.what], ['EmpTvError', 'storage'])
  assert.match(failure.message, /^persist 'living room': this page can't lock it: ./)
  assert.equal(await page.evaluate(async () => (await (await client).createTv()).window.GetTVMode()), 1, 'a TV that is not kept')
})

test('a browser that forbids storage, or is not to be trusted with locks, is told', async () => {
  await open()
  for (const [name, message] of [['indexedDB', /a TV is kept in browsers alone/], ['locks', /can't tell other tabs from itself/]]) {
    await open()
    await page.evaluate(what => Object.defineProperty(what === 'locks' ? navigator : globalThis, what, {value: undefined}), name)
    const failure = await make()
    assert.deepEqual([failure.name, failure.what], ['EmpTvError', 'storage'])
    assert.match(failure.message, message)
  }
  await open()
  await page.evaluate(() => {
    indexedDB.open = () => { throw new DOMException('denied', 'SecurityError') }
  })
  assert.match((await make()).message, /^persist 'living room': this page can't keep anything in IndexedDB: denied$/)
  await page.evaluate(() => { delete indexedDB.open })
  assert.equal(await make(), undefined, 'the key was given back')
})
