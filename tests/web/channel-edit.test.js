// SPDX-License-Identifier: MIT
// Editing lists on the page: each change of a service, by mouse and by keyboard, and the list as a file.
import assert from 'node:assert/strict'
import {readFileSync} from 'node:fs'
import {afterEach, test} from 'node:test'
import {findings} from './support/axe.js'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown?.close())

const pane = () => shown.pane('Channels')
const row = name => pane().getByRole('row').filter({hasText: name})
const panel = () => pane().getByRole('region', {name: 'Edit channel'})
const press = (...keys) => keys.reduce((before, key) => before.then(() => shown.page.keyboard.press(key)), Promise.resolve())
const service = async name => (await shown.tv.services({text: name})).services[0]
/** Waits until the row of a service shows its number. */
const hasNumber = (name, number) => row(name).getByText(number, {exact: true}).waitFor()

/** Opens the panel of a service with the button in its row. */
async function edit(name) {
  await row(name).hover()
  await row(name).getByRole('button', {name: `Edit ${name}`}).click()
  await panel().waitFor()
}

test('the mouse renames, renumbers, moves, hides, locks and removes a channel, which stays chosen', async () => {
  shown = await Console.open()
  const {key} = await service('Lighthouse News')
  const now = async () => (await shown.tv.services({key})).services[0]
  await edit('Lighthouse News')
  assert.equal((await shown.tv.state()).windows.main.service.name, 'Lighthouse One', 'nothing is tuned')
  await panel().getByLabel('Name').last().fill('Beacon')
  await panel().getByRole('button', {name: 'Rename'}).click()
  await row('Beacon').waitFor()
  await panel().getByLabel('Number').last().fill('4000')
  await panel().getByRole('button', {name: 'Renumber'}).click()
  await hasNumber('Beacon', '4000')
  assert.equal(await row('Beacon').getAttribute('aria-selected'), 'true')
  await panel().getByLabel('Number').last().fill('3')
  await panel().getByRole('button', {name: 'Move there'}).click()
  await hasNumber('Beacon', '3')
  await panel().getByRole('button', {name: 'Hidden'}).click()
  await row('Beacon').getByText('hidden').waitFor()
  await panel().getByRole('button', {name: 'Locked'}).click()
  await row('Beacon').getByText('locked').waitFor()
  const {name, major, hidden, locked} = await now()
  assert.deepEqual([name, major, hidden, locked], ['Beacon', 3, true, true])
  await panel().getByRole('button', {name: 'Hidden', pressed: true}).click()
  await panel().getByRole('button', {name: 'Hidden', pressed: false}).waitFor()
  await panel().getByRole('button', {name: 'Remove'}).click()
  await panel().getByRole('button', {name: 'Remove for good'}).click()
  await panel().waitFor({state: 'detached'})
  await pane().getByText('Removed Beacon').waitFor()
  assert.equal(await now(), undefined)
})

test('the keyboard alone does all of that', async () => {
  shown = await Console.open()
  await pane().getByLabel('Search channels').fill('lighthouse news')
  await pane().getByText('1 channel', {exact: true}).waitFor()
  await pane().getByRole('grid').focus()
  await press('ArrowDown', 'e', 'End')
  await shown.page.keyboard.type(' Two')
  await press('Enter')
  await row('Lighthouse News Two').waitFor()
  await press('Tab', 'Tab', 'Control+A')
  await shown.page.keyboard.type('901')
  await press('Enter')
  await hasNumber('News Two', '901')
  await press('Tab', 'Tab', 'Tab', 'Space')
  await row('News Two').getByText('hidden').waitFor()
  await press('Tab', 'Enter')
  await row('News Two').getByText('locked').waitFor()
  await press('Escape')
  await panel().waitFor({state: 'detached'})
  assert.equal(await shown.page.evaluate(() => document.activeElement.getAttribute('role')), 'grid')
  await press('e')
  await panel().getByRole('button', {name: 'Remove'}).focus()
  await press('Enter')
  await panel().getByRole('button', {name: 'Remove for good'}).waitFor()
  await press('Shift+Tab', 'Tab')
  await panel().getByRole('button', {name: 'Remove', exact: true}).waitFor()
  await press('Enter', 'Enter')
  await panel().waitFor({state: 'detached'})
  assert.equal((await shown.tv.services()).total, 80)
})

test('what the set refuses stands below its field, and goes with the next change', async () => {
  shown = await Console.open()
  await edit('Lighthouse News')
  const {major} = await service('Lighthouse Two')
  await panel().getByLabel('Number').last().fill(String(major))
  await panel().getByRole('button', {name: 'Renumber'}).click()
  const alert = panel().getByRole('alert')
  await alert.filter({hasText: `another service has the number ${major}; move puts this one there`}).waitFor()
  assert.equal(await panel().getByLabel('Number').last().inputValue(), String(major), 'what was typed stays')
  await panel().getByLabel('Name').last().fill('')
  await panel().getByRole('button', {name: 'Rename'}).click()
  await alert.filter({hasText: 'rename takes NAME'}).waitFor()
  assert.equal(await alert.count(), 1)
  await panel().getByRole('button', {name: 'Locked'}).click()
  await alert.waitFor({state: 'detached'})
})

test('what others change shows at once, and a channel that they remove is told', async () => {
  shown = await Console.open()
  const {key} = await service('Lighthouse News')
  const change = (what, value) => shown.tv.editService(`#${key}`, what, value)
  await edit('Lighthouse News')
  await change('rename', hostile)
  await panel().getByText(hostile).waitFor()
  await panel().locator('input').first().evaluate((field, wanted) => new Promise(resolve => {
    const look = () => field.value === wanted ? resolve() : requestAnimationFrame(look)
    look()
  }), hostile)
  await change('hide', 'on')
  await panel().getByRole('button', {name: 'Hidden', pressed: true}).waitFor()
  await change('remove')
  await panel().getByText('This channel is no longer in the list.').waitFor()
  assert.equal(await shown.page.title(), 'emp-window')
})

const hostile = '<script>document.title = 1</script>'

test('the panel crowds no list, on a phone neither, and a screen reader has all of it', async () => {
  shown = await Console.open({size: {width: 390, height: 844}, scheme: 'dark'})
  await (await shown.show('Channels')).waitFor()
  await shown.tv.editService(`#${(await service('Lighthouse News')).key}`, 'rename', 'x'.repeat(300))
  await row('xxx').waitFor()
  await pane().getByRole('grid').focus()
  await press('ArrowDown', 'ArrowDown', 'e')
  await panel().waitFor()
  assert.deepEqual(await findings(shown.page), [])
  assert.ok((await pane().getByRole('grid').boundingBox()).height >= 96)
  const over = await shown.page.evaluate(() => document.documentElement.scrollWidth - innerWidth)
  assert.ok(over <= 0, `${over} px`)
})

/** Presses a button of the export, and waits for the file. */
async function exported(label) {
  const [file] = await Promise.all([shown.page.waitForEvent('download'), pane().getByRole('button', {name: label, exact: true}).click()])
  return {name: file.suggestedFilename(), content: readFileSync(await file.path(), 'utf8')}
}

test('the list is saved in each format, with what is left out or lost told', async () => {
  shown = await Console.open()
  await pane().getByRole('button', {name: 'Export list…'}).click()
  const told = pane().getByRole('region', {name: 'Export channels'})
  for (const [label, format, name] of [['JSON', 'json', 'channels.json'], ['VDR', 'vdr', 'channels.conf'], ['libdvbv5', 'dvbv5', 'dvb_channel.conf']]) {
    const {content, services, lost} = await shown.tv.export(format)
    assert.deepEqual(await exported(label), {name, content})
    await told.getByText(`${services} channels saved as ${name}.`).waitFor()
    for (const {what, services: count} of lost) await told.getByText(`${what} of ${count}`).waitFor()
  }
  await told.getByRole('button', {name: 'M3U'}).click()
  await told.getByText('No channel can be written in this format; nothing was saved.').waitFor()
  await shown.tv.import('#EXTM3U\n#EXTINF:-1,One\nhttp://127.0.0.1/one\n', {add: true})
  assert.match((await exported('M3U')).content, /#EXTINF:.*One\nhttp:/)
  await told.getByText('1 channel saved as channels.m3u. 81 left out').waitFor()
  assert.deepEqual(await findings(shown.page), [])
  await told.getByRole('button', {name: 'JSON'}).press('Escape')
  await told.waitFor({state: 'detached'})
})
