// SPDX-License-Identifier: MIT
// Visits to the site: pages in browsers of their own, with service workers, as visitors have them.
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

/** The path of the site on its server. */
export const base = '/some/where/tv/'

let browser
let server
let contexts = []
const errors = []
const folders = []

/** Starts one browser for all tests of a file; each test has a server of its own. */
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

/** Serves the site. @param more  further folders by path, which may also replace the site */
export async function serve(more = {}, port = 0) {
  server = await new FileServer({[base]: folder, ...more}).listen(port)
  return server
}

/** Makes a copy of the site that can be changed. It is removed after the test. */
export function copyOfSite() {
  const copy = mkdtempSync(join(tmpdir(), 'emp-window-site-'))
  folders.push(copy)
  cpSync(folder, copy, {recursive: true})
  return copy
}

/** Makes another version of a site: changes a file and updates the list of files as tools/site does. @param more
 *  further files, which are not listed */
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

/** Opens an address of the site in a tab, in a new browser or beside another tab. `before` runs in the page before
 *  its first line. */
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

/** Waits until the page shows its TV. On a first visit the page reloads itself once. */
export async function ready(page) {
  await page.getByRole('img', {name: 'App space'}).waitFor()
}

/** Calls the set in a page. @return the result */
export async function ask(page, method, params = {}) {
  const request = JSON.stringify({jsonrpc: '2.0', id: 1, method, params})
  const {result, error} = JSON.parse(await page.evaluate(text => globalThis[Symbol.for('emp-window/site')].post(text), request))
  if (error) throw new Error(`${error.message}: ${error.data?.reason}`)
  return result
}

/** Waits until the browser has persisted a set whose document contains a text. */
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

/** Starts the zapper over the picture. @return its frame, where the TV is `tvWindow` */
export async function startZapper(page) {
  await page.getByRole('tab', {name: 'App', exact: true}).click()
  await page.getByRole('button', {name: 'Zapper'}).click()
  await page.getByText('Has the TV as', {exact: true}).waitFor()
  return page.frames().find(frame => frame.url().includes('/zapper/'))
}

/** The part of the page's head that says where the set is. */
export const where = page => page.locator('.kept-in')

/** The part of the pane Set that says it. */
export async function how(page) {
  await page.getByRole('tab', {name: 'Set', exact: true}).click()
  return page.locator('.kept-how')
}
