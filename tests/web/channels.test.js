// SPDX-License-Identifier: MIT
// The list of channels: search, filters, tuning, favourites.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown?.close())

const pane = () => shown.pane('Channels')
const row = name => pane().getByRole('row').filter({hasText: name})
const counts = text => pane().getByText(text, {exact: true}).waitFor()
const main = async () => (await shown.tv.state()).windows.main

test('lists all channels, with number, antenna, kind and marks', async () => {
  shown = await Console.open({size: {width: 1280, height: 4000}})
  await counts('81 channels')
  await row('Granite Sport 1').getByText('5-1', {exact: true}).waitFor()
  await row('Engineering Channel').getByText('locked').waitFor()
  await row('Night Ferry Jazz').getByText('hidden').waitFor()
  await row('Foghorn FM').getByText('radio').waitFor()
  await row('Südwind').getByText('sat').waitFor()
  await row('(no name)').first().waitFor()
})

test('a search and each filter narrow the list', async () => {
  shown = await Console.open()
  await pane().getByLabel('Search channels').fill('lighthouse')
  const total = (await shown.tv.services({text: 'lighthouse'})).total
  await counts(`${total} channels`)
  await pane().getByRole('status').filter({hasText: `${total} channels`}).waitFor()
  await pane().getByLabel('Antenna').selectOption('cable')
  await counts(`${(await shown.tv.services({text: 'lighthouse', antenna: 'cable'})).total} channels`)
  await pane().getByLabel('Search channels').fill('')
  await pane().getByLabel('Kind').selectOption('radio')
  await counts(`${(await shown.tv.services({antenna: 'cable', kind: 'radio'})).total} channels`)
  await pane().getByLabel('Antenna').selectOption('')
  await pane().getByLabel('Kind').selectOption('')
  await pane().getByLabel('Group').first().selectOption('Nationwide')
  await counts(`${(await shown.tv.services({group: 'Nationwide'})).total} channels`)
  await pane().getByLabel('Search channels').fill('there is none like this')
  await pane().getByText('No channel matches').waitFor()
})

test('the groups of a long list can be chosen before a channel of them was seen', async () => {
  shown = await Console.open()
  const channel = at => `Station ${at}:${10714 + at}:HC56M2S0:S19.2E:22000:${at + 32}:${at + 2000}=eng@3:0:0:${at}:1:1:0`
  const list = [':Near', ...Array.from({length: 250}, (_, at) => channel(at + 1)), ':Far <b>', channel(251)].join('\n')
  await shown.tv.import(list, {format: 'vdr'})
  await counts('251 channels')
  await pane().getByLabel('Group').first().selectOption('Far <b>')
  await counts('1 channel')
  await row('Station 251').waitFor()
})

test('a click tunes the main window, also from another antenna or input', async () => {
  shown = await Console.open()
  await shown.tv.window.SetSource(31, 0)
  await pane().getByLabel('Search channels').fill('meridian news')
  await row('Meridian News HD').click()
  await row('Meridian News HD').getByText('on air').waitFor()
  const {source, service, tvMode} = await main()
  assert.deepEqual([source.number, service.name, tvMode.antenna], [0, 'Meridian News HD', 2])
  await pane().getByRole('status').filter({hasText: '2 Meridian News HD'}).waitFor()
})

test('the keyboard alone finds, tunes and marks a channel', async () => {
  shown = await Console.open()
  await pane().getByLabel('Search channels').fill('granite')
  await counts(`${(await shown.tv.services({text: 'granite'})).total} channels`)
  await pane().getByRole('grid').focus()
  await shown.page.keyboard.press('ArrowDown')
  await shown.page.keyboard.press('Enter')
  await row('Granite Sport 1').getByText('on air').waitFor()
  await shown.page.keyboard.press(' ')
  await row('Granite Sport 1').getByRole('button', {pressed: true}).waitFor()
  assert.deepEqual((await shown.tv.services({text: 'Granite Sport 1'})).services[0].favourites, [1])
})

test('a star puts a channel into the favourite group chosen, and takes it out', async () => {
  shown = await Console.open()
  await pane().getByLabel('Favourite group').selectOption('200')
  await row('Lighthouse News').getByRole('button').click()
  await row('Lighthouse News').getByRole('button', {pressed: true}).waitFor()
  assert.ok((await shown.tv.services({text: 'Lighthouse News'})).services[0].favourites.includes(200))
  await pane().getByLabel('only these').check()
  await counts('1 channel')
  await row('Lighthouse News').getByRole('button').click()
  await pane().getByText('No channel matches').waitFor()
  assert.ok(!(await shown.tv.services({text: 'Lighthouse News'})).services[0].favourites.includes(200))
})

test('the channel of the second window is marked, too', async () => {
  shown = await Console.open()
  await shown.page.getByRole('button', {name: 'Picture-in-picture', exact: true}).click()
  await row('Lighthouse Two').getByText('pip', {exact: true}).waitFor()
})

const hostile = ['<script>document.title = 1</script>', '"quotes" & \'more\'', '\u202Ebackwards', 'x'.repeat(500)]

test('names from anywhere are texts and leave the list as it is', async () => {
  shown = await Console.open()
  for (const [at, name] of hostile.entries()) await shown.tv.set(`service.#${at + 1}.name`, JSON.stringify(name).replace('\u202E', '\\u202E'))
  for (const name of hostile) await row(name).waitFor()
  const list = await pane().getByRole('grid').boundingBox()
  for (const each of await pane().getByRole('row').all()) {
    const box = await each.boundingBox()
    assert.deepEqual([box.width <= list.width, box.height], [true, 24])
  }
  await row(hostile[0]).click()
  await shown.page.getByRole('tab', {name: 'Tracks'}).click()
  await shown.pane('Tracks').getByText(hostile[0]).first().waitFor()
  assert.equal(await shown.page.title(), 'emp-window')
  const over = await shown.page.evaluate(() => document.documentElement.scrollWidth - innerWidth)
  assert.ok(over <= 0, `${over} px`)
})

test('another list shows at once, one without a match says what to do', async () => {
  shown = await Console.open()
  await counts('81 channels')
  await shown.tv.import(vdr(20_000), {format: 'vdr'})
  await counts('20000 channels')
  await pane().getByRole('grid').focus()
  await shown.page.keyboard.press('End')
  await row('Station 20000').waitFor()
  await pane().getByLabel('Search channels').fill('station 1999')
  await counts('11 channels')
})

/** A channel list. @param {number} count */
function vdr(count) {
  return Array.from({length: count}, (_, at) => `Station ${at + 1}:${10714 + at % 1000}:HC56M2S0:S19.2E:22000:${at % 8000 + 32}:${at % 8000 + 33}=eng@3:0:0:${at % 60000 + 1}:${1 + Math.floor(at / 60000)}:${at % 1000}:0`).join('\n')
}
