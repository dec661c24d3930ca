// SPDX-License-Identifier: MIT
// Visits of the site: pages in browsers of their own, as people have them, with service workers.
import assert from 'node:assert/strict'
import {cpSync, mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs'
import {createHash} from 'node:crypto'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {after, afterEach, before} from 'node:test'
import {startBrowser} from '../../client/support/browser.js'
import {until} from '../../client/support/wait.js'
import {folder} from './bridge.js'
import {FileServer} from './files.js'

/** Where the site lies on its server. */
export const base = '/some/where/tv/'

let browser
let server
let contexts = []
const errors = []
const folders = []

/** Has one browser for all tests of a file, and each test a server of its own. */
export function useVisits() {
  before(async () => { browser = await startBrowser() })
  after(() => browser?.close())
  afterEach(async () => {
    for (const context of contexts) await context.close()
    contexts = []
    server?.close()
    server = undefined
    for (const made of folders.splice(0)) rmSync(made, {recursive: true, force: true})
    assert.deepEqual(errors.splice(0), [])
  })
}

/** Serves the site. @param more  folders by the paths under which they lie beside it, or in its place */
export async function serve(more = {}, port = 0) {
  server = await new FileServer({[base]: folder, ...more}).listen(port)
  return server
}

/** A copy of the site that can be changed; it is removed after the test. */
export function copyOfSite() {
  const copy = mkdtempSync(join(tmpdir(), 'emp-window-site-'))
  folders.push(copy)
  cpSync(folder, copy, {recursive: true})
  return copy
}

/** Changes a file of a site and lists it as tools/site does, so that it is another version. @param more  files beside, not listed */
export function makeVersion(site, path, change, more = {}) {
  for (const [name, text] of Object.entries(more)) writeFileSync(join(site, name), text)
  const hash = bytes => createHash('sha256').update(bytes).digest('base64')
  const old = readFileSync(join(site, path))
  const changed = Buffer.from(change(old.toString()))
  writeFileSync(join(site, path), changed)
  const list = join(site, 'service-worker.js')
  const text = readFileSync(list, 'utf8')
  const next = text.replace(hash(old), hash(changed)).replace(/const version = '(.)/, (_, letter) => `const version = '${letter === '0' ? '1' : '0'}`)
  assert.notEqual(next, text)
  writeFileSync(list, next)
}

/** Opens an address of the site in a tab: a new browser's, or one beside another tab. @param how  `before` runs in the page before its first line */
export async function open({address = `${server.origin}${base}`, beside, isReady = true, mayComplain = false, size, before} = {}) {
  const page = await browser.page(beside?.context())
  contexts.push(page.context())
  if (size) await page.setViewportSize(size)
  if (before) await page.addInitScript(before)
  if (!mayComplain) {
    page.on('console', message => message.type() === 'error' && errors.push(message.text()))
    page.on('pageerror', error => errors.push(error.stack))
  }
  await page.goto(address)
  if (isReady) await ready(page)
  return page
}

/** Waits until the page shows its TV; on a first visit it is loaded anew on the way. */
export async function ready(page) {
  await page.getByRole('img', {name: 'App space'}).waitFor()
}

/** A call to the set in a page; its result. */
export async function ask(page, method, params = {}) {
  const request = JSON.stringify({jsonrpc: '2.0', id: 1, method, params})
  const {result, error} = JSON.parse(await page.evaluate(text => globalThis[Symbol.for('emp-window/site')].post(text), request))
  if (error) throw new Error(`${error.message}: ${error.data?.reason}`)
  return result
}

/** Waits until the browser keeps a set whose document has a text in it. */
export async function untilKept(page, text) {
  const isKept = () => page.evaluate(async wanted => {
    const open = indexedDB.open('emp-window')
    await new Promise(resolve => { open.onsuccess = resolve })
    const get = open.result.transaction('sets').objectStore('sets').getAll()
    await new Promise(resolve => { get.onsuccess = resolve })
    open.result.close()
    return JSON.stringify(get.result).includes(wanted)
  }, text)
  await until(isKept, `${text} is kept`)
}

/** Runs the zapper over the picture. @return its frame, in which `tvWindow` is the TV */
export async function startZapper(page) {
  await page.getByRole('tab', {name: 'App', exact: true}).click()
  await page.getByRole('button', {name: 'Zapper'}).click()
  await page.getByText('Has the TV as', {exact: true}).waitFor()
  return page.frames().find(frame => frame.url().includes('/zapper/'))
}

/** What the head says about where the set is. */
export const where = page => page.locator('.kept-in')

/** What the pane Set says about it. */
export async function how(page) {
  await page.getByRole('tab', {name: 'Set', exact: true}).click()
  return page.locator('.kept-how')
}
