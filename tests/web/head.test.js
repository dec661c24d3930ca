// SPDX-License-Identifier: MIT
// The head of the page: who is connected, the TV mode, and a search over everything with a name.
import assert from 'node:assert/strict'
import {mkdtemp, rm} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {dirname, join} from 'node:path'
import {afterEach, beforeEach, test} from 'node:test'
import {serve} from '../client/support/server.js'
import {until} from '../client/support/wait.js'
import {elsewhere} from '../site/support/bridge.js'
import {brokenConnection, Console, useBrowser} from './support/console.js'

let shown
useBrowser()
beforeEach(async () => { shown = await Console.open() })
afterEach(() => shown.close())

const search = () => shown.page.getByRole('combobox', {name: 'Search panes, commands and channels'})

test('counts clients and engines as they come and go', async () => {
  await shown.page.getByText('0 engines, 2 clients').waitFor()
  const other = await shown.connect()
  await other.window.GetTVMode()
  await shown.page.getByText('1 engine, 3 clients').waitFor()
  await other.close()
  await shown.page.getByText('0 engines, 2 clients').waitFor()
})

test('tells where the set is kept, anew where another server has taken its place', {skip: elsewhere('a tab has no server that ends')}, async () => {
  await shown.page.getByText('State: in memory').waitFor()
  const directory = join(await mkdtemp(join(tmpdir(), 'head-test-')), '<b>state')
  const {port} = shown.server
  await shown.tv.close()
  await shown.server.kill()
  shown.server = await serve({port, state: directory})
  shown.tv = await shown.connect()
  await shown.page.getByText(`State: ${directory}`).waitFor()
  shown.tolerated = brokenConnection
  await shown.tv.close()
  await shown.server.kill()
  await rm(dirname(directory), {recursive: true})
})

test('shows the TV mode and changes it', async () => {
  const mode = shown.page.getByLabel('TV mode')
  await mode.selectOption('Cable')
  await until(async () => (await shown.tv.state()).windows.main.tvMode.antenna === 1)
  await shown.tv.window.SetTVMode(4)
  await until(async () => await mode.inputValue() === '2')
})

test('search finds a channel, which is then on screen', async () => {
  await shown.page.keyboard.press('Control+k')
  await shown.page.keyboard.type('LIGHTHOUSE NEWS')
  await shown.page.getByRole('option', {name: 'Lighthouse News'}).waitFor()
  await shown.page.keyboard.press('Enter')
  await until(async () => (await shown.tv.state()).windows.main.service.name === 'Lighthouse News')
  assert.equal(await search().inputValue(), '')
})

test('search goes to panes, by keys and by mouse', async () => {
  await search().fill('fau')
  await search().press('Enter')
  assert.ok(await shown.page.getByRole('tabpanel', {name: 'Faults'}).isVisible())
  await search().fill('e')
  await search().press('ArrowDown')
  await search().press('ArrowUp')
  await search().press('ArrowUp')
  assert.equal(await shown.page.getByRole('listbox', {name: 'Found'}).getByRole('option', {selected: true}).count(), 1)
  await shown.page.getByRole('option', {name: /^Planes/}).click()
  assert.ok(await shown.page.getByRole('tabpanel', {name: 'Planes'}).isVisible())
})

test('search says where nothing is found, and Escape ends it', async () => {
  await search().fill('nothing has this name')
  await shown.page.getByText('No match.').waitFor()
  await search().press('Escape')
  await shown.page.getByText('No match.').waitFor({state: 'hidden'})
})
