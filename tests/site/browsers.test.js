// SPDX-License-Identifier: MIT
// The site on real servers, in real browsers and with real apps.
import assert from 'node:assert/strict'
import {spawn} from 'node:child_process'
import {once} from 'node:events'
import {cpSync, mkdirSync, mkdtempSync, rmSync, writeFileSync} from 'node:fs'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {test} from 'node:test'
import {folder} from './support/bridge.js'
import {ask, base, copyOfSite, how, makeVersion, open, ready, serve, startZapper, useVisits, where} from './support/visit.js'

useVisits()

test('it runs on the web server of Python, in a subfolder, and offline when that has ended', async context => {
  const root = mkdtempSync(join(tmpdir(), 'emp-window-site-'))
  cpSync(folder, join(root, 'a b/ü'), {recursive: true})
  const server = spawn('python3', ['-u', '-m', 'http.server', '--bind', '127.0.0.1', '-d', root, '0'], {stdio: ['ignore', 'pipe', 'ignore']})
  context.after(() => {
    server.kill('SIGKILL')
    rmSync(root, {recursive: true})
  })
  const [line] = await once(server.stdout.setEncoding('utf8'), 'data')
  const page = await open({address: `http://127.0.0.1:${/port (\d+)/.exec(line)[1]}/a%20b/%C3%BC/`})
  assert.equal(await page.evaluate(() => globalThis.crossOriginIsolated), true)
  await where(page).getByText('stored in this browser').waitFor()
  server.kill('SIGKILL')
  await once(server, 'exit')
  await page.reload()
  await ready(page)
  const zapper = await startZapper(page)
  assert.equal(await zapper.evaluate(() => tvWindow.SetChannel(3, 0)), 1)
})

test('a tab goes on with the set that is kept once the other tab is closed', async () => {
  await serve()
  const first = await open()
  const second = await open({beside: first})
  await where(second).getByText("not stored, another tab's is").waitFor()
  await ask(first, 'tv.set', {name: 'region', value: 2})
  await first.close()
  await second.reload()
  await ready(second)
  await where(second).getByText('stored in this browser').waitFor()
  assert.equal((await ask(second, 'tv.state')).region, 2)
})

test('a page that a person comes back to has the set that is kept', async () => {
  await serve()
  const page = await open()
  await ask(page, 'tv.set', {name: 'region', value: 2})
  await page.goto('about:blank')
  await page.goBack()
  await ready(page)
  await where(page).getByText('stored in this browser').waitFor()
  assert.equal((await ask(page, 'tv.state')).region, 2)
})

/** Opens the site in a browser that lacks a feature. @param lack  code that removes the feature */
async function openWithout(lack) {
  const site = copyOfSite()
  makeVersion(site, 'set/worker.js', text => `import './lack.js'\n${text}`, {'set/lack.js': lack})
  await serve({[base]: site})
  return open()
}

test('where IndexedDB is forbidden, as in private windows, the set is not kept, and its link is the way out', async () => {
  const page = await openWithout("Object.defineProperty(globalThis, 'indexedDB', {get() { throw new DOMException('The operation is insecure', 'SecurityError') }})")
  await where(page).getByText('not stored').waitFor()
  await (await how(page)).getByText("stores nothing for this page: this page can't keep anything in IndexedDB: The operation is insecure").waitFor()
  await page.context().grantPermissions(['clipboard-read', 'clipboard-write'])
  await page.getByRole('button', {name: 'Copy link'}).click()
  await page.getByText(/^Copied a link of [\d,]+ characters$/).waitFor()
})

test('where IndexedDB can not be opened the set is not kept', async () => {
  const page = await openWithout(`IDBFactory.prototype.open = () => {
    const request = {error: new DOMException('A mutation operation was attempted', 'InvalidStateError')}
    setTimeout(() => request.onerror())
    return request
  }`)
  await (await how(page)).getByText('A mutation operation was attempted').waitFor()
})

for (const [what, before, reason] of [
  ['without service workers', () => { delete Navigator.prototype.serviceWorker }, 'its address is neither of this machine'],
  ['that refuses service workers', () => { ServiceWorkerContainer.prototype.register = async () => { throw new DOMException('The operation is insecure', 'SecurityError') } }, 'The operation is insecure'],
  ['without shared memory', () => { delete globalThis.SharedArrayBuffer }, 'this browser does not do that'],
]) {
  test(`in a browser ${what} the set is on the page's own thread, apps call it, and it is kept`, async () => {
    await serve()
    const page = await open({before})
    assert.equal(page.workers().length, 0)
    await where(page).getByText('stored in this browser').waitFor()
    const zapper = await startZapper(page)
    assert.equal(await zapper.evaluate(() => tvWindow.SetChannel(3, 0)), 1)
    await page.getByText(reason).waitFor()
    await page.reload()
    await ready(page)
    await where(page).getByText('stored in this browser').waitFor()
    assert.equal((await ask(page, 'tv.state')).windows.main.service.major, 3)
  })
}

test('an app that loads tv.js has a set of its own, which the page does not show', async () => {
  const site = copyOfSite()
  mkdirSync(join(site, 'mine'))
  writeFileSync(join(site, 'mine/index.html'), '<!doctype html><title>app</title><script src="../tv.js?name=tvWindow"></script>')
  const {origin} = await serve({[base]: site})
  const page = await open()
  const before = (await ask(page, 'tv.state')).windows.main.service.name
  await page.getByRole('tab', {name: 'App', exact: true}).click()
  await page.getByLabel('Address of the app').fill(`${origin}${base}mine/index.html`)
  await page.getByRole('tabpanel', {name: 'App'}).getByRole('button', {name: 'Run', exact: true}).click()
  await page.getByText('Has the TV as', {exact: true}).waitFor()
  const frame = page.frames().find(one => one.url().includes('/mine/'))
  assert.deepEqual(await frame.evaluate(() => [tvWindow.SetChannel(3, 0), tvWindow.GetCurrentChannel_Major()]), [1, 3])
  assert.equal((await ask(page, 'tv.state')).windows.main.service.name, before)
})
