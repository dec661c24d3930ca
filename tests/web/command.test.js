// SPDX-License-Identifier: MIT
// The command pane: completion, parameters by name, replies, history, and the shell.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {until} from '../client/support/wait.js'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown?.close())

const pane = () => shown.pane('Command')
const input = () => pane().getByRole('combobox', {name: 'Command'})
const replies = () => pane().getByRole('log', {name: 'Replies'})
const run = async line => {
  await input().fill(line)
  await input().press('Enter')
}
const mainRect = async () => (await shown.tv.state()).windows.main.plane.app.rect

test('a command is completed as one types, and its parameters are filled in by name', async () => {
  shown = await Console.open()
  await input().pressSequentially('screenrect')
  const choices = pane().getByRole('listbox', {name: 'Commands'}).getByRole('option')
  await choices.filter({hasText: 'SetScreenRect x y width height'}).first().waitFor()
  await input().fill('SetScreenRec')
  await input().press('ArrowDown')
  assert.equal(await choices.first().getAttribute('aria-selected'), 'true')
  assert.equal(await input().getAttribute('aria-activedescendant'), await choices.first().getAttribute('id'))
  await input().press('Enter')
  assert.match(await input().inputValue(), /^SetScreenRect /)
  for (const [name, value] of [['x', 10], ['y', 20], ['width', 300], ['height', 200]]) {
    await pane().getByLabel(name, {exact: true}).fill(String(value))
  }
  assert.equal(await input().inputValue(), 'SetScreenRect 10 20 300 200')
  await pane().getByRole('button', {name: 'Run'}).click()
  await replies().getByText('int 1', {exact: true}).waitFor()
  assert.deepEqual(await mainRect(), {x: 10, y: 20, width: 300, height: 200})
})

test('all fields of a command with four parameters are seen at once at 1280 x 720, and room is left for replies', async () => {
  shown = await Console.open()
  await input().fill('SetScreenRect ')
  const parameters = await pane().locator('.parameters').boundingBox()
  for (const name of ['x', 'y', 'width', 'height']) {
    const field = await pane().getByLabel(name, {exact: true}).boundingBox()
    assert.ok(field.y >= parameters.y && field.y + field.height <= parameters.y + parameters.height, name)
    const help = await pane().locator('.parameter', {has: shown.page.getByLabel(name, {exact: true})}).locator('.parameter-help').boundingBox()
    assert.ok(help.y >= field.y + field.height && help.y + help.height <= parameters.y + parameters.height + 1, `the help of ${name}`)
    assert.ok(field.width > 80, `${name} is ${field.width} px wide`)
  }
  const box = await pane().boundingBox()
  const room = await replies().boundingBox()
  assert.ok(room.height >= 32 && room.y + room.height <= box.y + box.height, `${room.height} px`)
})

test('replies tell their kind, failures their meaning, refused ones that they are', async () => {
  shown = await Console.open()
  await run('GetCurrentChannel_Name')
  await replies().getByText('unicode "Lighthouse One"').waitFor()
  await run('GetChannel_Name 7')
  await replies().locator('.fail').getByText('int -1').waitFor()
  await replies().getByText('The list has no such position').waitFor()
  await run('NoSuchCommand 1')
  await replies().getByText('The engine refused the command.').waitFor()
})

test('a name of its own and more than four parameters go as a parameter list', async () => {
  shown = await Console.open()
  await run('SetScreenCropRect 1 2 3 4 5 6 7 8')
  await replies().getByText('A command takes at most 4 parameters').waitFor()
  await input().fill('SetScreenCropRect 0 0 960 540 0 0 480 270')
  await pane().getByLabel('Parameter list').check()
  assert.equal(await input().inputValue(), '+ SetScreenCropRect 0 0 960 540 0 0 480 270')
  await pane().getByRole('button', {name: 'Run'}).click()
  await replies().getByText('> + SetScreenCropRect').waitFor()
  await until(() => shown.page.evaluate(async () => (await import('/page/timeline-log.js')).timeline.entries.some(({topic, event}) => topic === 'command' && event.list)))
  assert.deepEqual((await shown.tv.why(1)).parameters, ['0', '0', '960', '540', '0', '0', '480', '270'])
})

test('the window that the engine has selected is seen', async () => {
  shown = await Console.open()
  await pane().getByText('Window of this page: 0 main').waitFor()
  await run('SetWindow 1')
  await pane().getByText('Window of this page: 1 pip').waitFor()
  await shown.tv.restart()
  await pane().getByText('Window of this page: 0 main').waitFor()
})

test('a line that starts with a dot is the shell\'s', async () => {
  shown = await Console.open()
  await run('.set region 9')
  await run('.get region')
  await replies().getByText('region = 9').waitFor()
  assert.equal(await shown.tv.get('region'), '9')
  await run('.nosuch')
  await replies().locator('.fail').getByText("there is no command '.nosuch'").waitFor()
})

test('what was run comes back with arrow up, after a reload too', async () => {
  shown = await Console.open()
  await run('SetChannel 3 0')
  await run('GetTVMode')
  await shown.page.reload()
  await input().press('ArrowUp')
  assert.equal(await input().inputValue(), 'GetTVMode')
  await input().press('ArrowUp')
  assert.equal(await input().inputValue(), 'SetChannel 3 0')
  await input().press('ArrowDown')
  assert.equal(await input().inputValue(), 'GetTVMode')
})

test('hostile names and long replies leave the layout and the page as they are', async () => {
  shown = await Console.open()
  const names = ['<script>alert(1)</script>', `${'long'.repeat(125)}`, '\u202Eevil\u200F', 'a\u0001b']
  for (const name of names) await run(`'${name}'`)
  await shown.tv.setSetting('big', 'x'.repeat(900_000))
  await run('.vconf get big')
  await shown.tv.set('service.#1.attached', 'n'.repeat(1_000_000))
  await run('FindChannel 0 1')
  await run('GetChannel_OnTVJson 0')
  await replies().getByRole('button', {name: /Show all 1,000,000 characters/}).click()
  await replies().getByRole('button', {name: 'Show the front'}).waitFor()
  await replies().getByText('\\u202Eevil\\u200F').first().waitFor()
  assert.equal(await shown.page.evaluate(() => document.documentElement.scrollWidth - innerWidth), 0)
  const over = await pane().evaluate(element => [...element.querySelectorAll('*')].map(part => Math.round(part.getBoundingClientRect().right - element.getBoundingClientRect().right)))
  assert.ok(Math.max(...over) <= 0, `${Math.max(...over)} px`)
})

test('a reply that is a document folds by keys and copies values', async () => {
  shown = await Console.open()
  await shown.page.context().grantPermissions(['clipboard-read', 'clipboard-write'])
  await shown.tv.set('service.#1.attached', '{"on":{"now":["News",true,null]}}')
  await run('FindChannel 0 1')
  await run('GetChannel_OnTVJson 0')
  const tree = replies().getByRole('tree', {name: 'Reply as a document'})
  const now = tree.getByRole('treeitem', {name: 'now'})
  assert.equal(await now.getAttribute('aria-expanded'), 'true')
  await tree.focus()
  for (const key of ['ArrowDown', 'ArrowDown', 'c', 'ArrowLeft']) await shown.page.keyboard.press(key)
  assert.equal(await now.getAttribute('aria-expanded'), 'false')
  assert.deepEqual(JSON.parse(await shown.page.evaluate(() => navigator.clipboard.readText())), ['News', true, null])
})
