// SPDX-License-Identifier: MIT
// Access control in a real browser: pages of other origins, frames without an origin, rebound names.
import assert from 'node:assert/strict'
import {mkdtemp, rm, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {afterEach, test} from 'node:test'
import {connect} from '../../virtualtv/console/client/client.js'
import {page, site, useBrowser} from './support/browser.js'
import {serve} from './support/server.js'

const ends = []  // functions that end the test's servers
useBrowser()
afterEach(async () => {
  for (const end of ends.splice(0)) await end()
})

const turn = JSON.stringify({jsonrpc: '2.0', id: 1, method: 'tv.set', params: {name: 'main.source', value: 13}})

/** Starts a server with these options. */
async function serving(...options) {
  const token = options.includes('--token') ? 's3cret' : undefined
  const server = await serve({options})
  const tv = await connect(server.address, {token})
  ends.push(() => tv.close(), () => server.kill())
  return {address: server.address, source: () => tv.get('main.source')}
}

/** Runs in a page: posts a call. @return the status and the text, or the name of the error */
const post = ({address, body, headers = {'Content-Type': 'application/json'}, mode}) =>
  fetch(`${address}/rpc`, {method: 'POST', headers, body, mode})
    .then(async answer => ({status: answer.status, text: await answer.text()}), error => error.name)

/** Runs in a page: opens a WebSocket and makes a call. @return its answer, or how it was closed */
const call = ({address, body, query = ''}) => new Promise(resolve => {
  const socket = new WebSocket(`${address.replace('http', 'ws')}/rpc${query}`)
  socket.onopen = () => socket.send(body)
  socket.onmessage = ({data}) => resolve(JSON.parse(data))
  socket.onclose = ({code, wasClean}) => resolve(`closed: ${code} ${wasClean}`)
})

test('a page of another origin reaches nothing by fetch, and changes nothing', async () => {
  const {address, source} = await serving()
  await page.goto(site.address)
  assert.equal(await page.evaluate(post, {address, body: turn}), 'TypeError')
  for (const type of ['text/plain', 'application/x-www-form-urlencoded', 'multipart/form-data']) {
    const headers = {'Content-Type': type}
    assert.equal(await page.evaluate(post, {address, body: turn, headers}), 'TypeError', type)
    assert.deepEqual(await page.evaluate(post, {address, body: turn, headers, mode: 'no-cors'}), {status: 0, text: ''}, type)
  }
  assert.equal(await page.evaluate(url => fetch(url).catch(error => error.name), `${address}/openrpc.json`), 'TypeError')
  assert.equal(await source(), '0')
})

test('a WebSocket of a page of another origin is refused', async () => {
  const {address, source} = await serving()
  await page.goto(site.address)
  assert.equal(await page.evaluate(call, {address, body: turn}), 'closed: 1006 false')
  assert.equal(await source(), '0')
})

test('a form of another origin is refused, whatever its type, and changes nothing', async () => {
  const {address, source} = await serving()
  const [front, back] = turn.split('"id":1')
  for (const type of ['text/plain', 'application/x-www-form-urlencoded']) {
    site.pages.set('/form', `<form method="post" enctype="${type}" action="${address}/rpc">
      <input name='${front}"id":"' value='"${back}'></form>`)
    await page.goto(`${site.address}/form`)
    const [answer] = await Promise.all([page.waitForResponse(`${address}/rpc`), page.evaluate(() => document.forms[0].submit())])
    assert.equal(answer.status(), 403, type)
    await page.waitForURL(`${address}/rpc`)
  }
  assert.equal(await source(), '0')
})

test('a name that points to this machine is refused with a line that says what to do', async () => {
  const {address, source} = await serving('--allow-host', 'tv.test')
  const named = name => address.replace('127.0.0.1', name)
  const answer = await page.goto(named('evil.test'))
  assert.equal(answer.status(), 403)
  assert.match(await answer.text(), /--allow-host evil.test/)
  const refused = await page.evaluate(post, {address: named('evil.test'), body: turn})
  assert.equal(refused.status, 403)
  assert.equal(await page.evaluate(call, {address: named('evil.test'), body: turn}), 'closed: 1006 false')
  assert.equal(await source(), '0')
  const body = JSON.stringify({jsonrpc: '2.0', id: 1, method: 'window.GetTVMode'})
  for (const name of ['127.0.0.1', 'localhost', 'tv.test']) {
    assert.equal((await page.goto(`${named(name)}/`)).status(), 200, name)
    assert.equal((await page.evaluate(post, {address: named(name), body})).status, 200, name)
    assert.equal((await page.evaluate(call, {address: named(name), body})).result.value, 1, name)
  }
})

test('an allowed origin gets in, reads errors too, and no other origin does', async () => {
  const {address, source} = await serving('--allow-origin', site.address)
  await page.goto(site.address)
  assert.match((await page.evaluate(post, {address, body: turn})).text, /"result"/)
  assert.equal(await source(), '13')
  assert.equal((await page.evaluate(post, {address, body: turn, headers: {'Content-Type': 'text/plain'}})).status, 415)
  assert.equal((await page.evaluate(call, {address, body: turn})).id, 1)
  const session = {'Content-Type': 'application/json', 'Emp-Session': 'no such'}
  assert.match((await page.evaluate(post, {address, body: turn, headers: session})).text, /"code":1003/)
  await page.goto(site.address.replace('127.0.0.1', 'localhost'))
  assert.equal(await page.evaluate(post, {address, body: turn}), 'TypeError')
  assert.equal(await page.evaluate(call, {address, body: turn}), 'closed: 1006 false')
})

test('every port of a host can be allowed', async () => {
  const {address} = await serving('--allow-origin', 'http://localhost:*')
  await page.goto(site.address.replace('127.0.0.1', 'localhost'))
  assert.equal((await page.evaluate(post, {address, body: turn})).status, 200)
  await page.goto(site.address)
  assert.equal(await page.evaluate(post, {address, body: turn}), 'TypeError')
})

test('a frame without an origin never gets in, not even on an allowed page', async () => {
  const {address, source} = await serving('--allow-origin', site.address)
  site.pages.set('/frame', '<iframe sandbox="allow-scripts" srcdoc="<p>frame</p>"></iframe>')
  await page.goto(`${site.address}/frame`)
  const frame = await (await page.waitForSelector('iframe')).contentFrame()
  await frame.waitForSelector('p')
  assert.equal(await frame.evaluate(() => origin), 'null')
  assert.equal(await frame.evaluate(post, {address, body: turn}), 'TypeError')
  assert.equal(await frame.evaluate(call, {address, body: turn}), 'closed: 1006 false')
  assert.equal(await source(), '0')
})

test('a token is wanted of pages too, for calls but not for scripts and preflights', async () => {
  const directory = await mkdtemp(join(tmpdir(), 'browser-token-'))
  await writeFile(join(directory, 'token'), 's3cret\n', {mode: 0o600})
  const {address, source} = await serving('--allow-origin', site.address, '--token', join(directory, 'token'))
  await rm(directory, {recursive: true})
  const bearer = token => ({'Content-Type': 'application/json', Authorization: `Bearer ${token}`})
  for (const origin of [site.address, address]) {
    await page.goto(origin)
    assert.equal((await page.evaluate(post, {address, body: turn})).status, 401)
    assert.equal((await page.evaluate(post, {address, body: turn, headers: bearer('wrong')})).status, 401)
    assert.equal(await page.evaluate(call, {address, body: turn}), 'closed: 1006 false')
    assert.equal(await page.evaluate(call, {address, body: turn, query: '?token=wrong'}), 'closed: 1006 false')
  }
  assert.equal(await source(), '0')
  await page.goto(site.address)
  assert.equal((await page.evaluate(post, {address, body: turn, headers: bearer('s3cret')})).status, 200)
  assert.equal((await page.evaluate(call, {address, body: turn, query: '?token=s3cret'})).id, 1)
  const statuses = await page.evaluate(base => Promise.all(['/client.js', '/window.js', '/openrpc.json']
    .map(path => fetch(base + path).then(answer => answer.status))), address)
  assert.deepEqual(statuses, [200, 200, 401])
})

test('the page runs no script of others, stands in no frame, and asks nobody but its server', async () => {
  const {address} = await serving('--allow-origin', site.address)
  const asked = []
  page.on('request', request => asked.push(new URL(request.url()).origin))
  const answer = await page.goto(`${address}/`)
  assert.equal(answer.headers()['content-security-policy'],
    `default-src 'self'; media-src 'self' blob:; frame-src 'self' ${site.address}; frame-ancestors 'none'; ` +
    "object-src 'none'; base-uri 'none'; form-action 'none'")
  const blocked = await page.evaluate(() => new Promise(resolve => {
    document.addEventListener('securitypolicyviolation', event => resolve(event.effectiveDirective))
    const script = document.createElement('script')
    script.textContent = 'globalThis.injected = true'
    document.body.append(script)
  }))
  assert.equal(blocked, 'script-src-elem')
  assert.equal(await page.evaluate(() => globalThis.injected), undefined)
  assert.deepEqual([...new Set(asked)], [address])
  site.pages.set('/outer', `<iframe src="${address}/"></iframe>`)
  await page.goto(`${site.address}/outer`)
  const frame = await (await page.waitForSelector('iframe')).contentFrame()
  assert.match(frame.url(), /^chrome-error:/)
})
