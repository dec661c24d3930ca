// SPDX-License-Identifier: MIT
// The set: what it was built for, its knobs, latencies and settings keys, and saving it.
import assert from 'node:assert/strict'
import fs from 'node:fs/promises'
import {afterEach, test} from 'node:test'
import {until} from '../client/support/wait.js'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown?.close())

const pane = () => shown.pane('Set')
const field = name => pane().getByLabel(name, {exact: true})
const open = async () => {
  shown = await Console.open()
  await shown.show('Set')
}
/** Types into a field and leaves it, as a person does. */
const type = async (name, text) => {
  await field(name).first().fill(text)
  await field(name).first().press('Tab')
}

test('TV mode, region, country and the like are told with their meaning and can be changed', async () => {
  await open()
  await pane().getByText('0,1 terrestrial, service list 1').waitFor()
  await field('TV mode of the main window').selectOption('4')
  await pane().getByText('2,1 satellite, service list 1').waitFor()
  assert.equal((await shown.tv.state()).windows.main.tvMode.antenna, 2)
  await type('Region', '17')
  await pane().getByText('service list 2, whatever the country').waitFor()
  await type('Country', '36')
  await pane().getByText('service list 21, an operator\'s').waitFor()
  await field('Tuner fade').fill('255')
  await pane().getByText('no signal is left').waitFor()
  await field('ISP').click()
  await pane().getByText('the second TV stack can\'t be reached').waitFor()
  await type('Start source', '17')
  await pane().getByText('SCART, 35 for commands').waitFor()
  const {region, country, tuner, isp, start} = await shown.tv.state()
  assert.deepEqual([region, country, tuner.fade, isp.present, start.source], [17, 36, 255, false, 17])
})

test('what the set refuses says why, beside the field', async () => {
  await open()
  await type('Country', 'x')
  await pane().getByRole('alert').filter({hasText: 'a number from -2147483648 to 2147483647 is wanted'}).waitFor()
  await type('Country', '4')
  await pane().getByRole('alert').waitFor({state: 'detached'})
  assert.equal((await shown.tv.state()).country, 4)
})

test('all knobs can be found, read and turned', async () => {
  await open()
  await field('Search knobs').fill('isp picture')
  await type('isp.picture', '640x480')
  await type('isp.picture', '1280')
  await pane().getByRole('alert').filter({hasText: 'WIDTHxHEIGHT is wanted'}).waitFor()
  assert.equal((await shown.tv.state()).isp.picture.width, 640)
  await field('Search knobs').fill('seconds since')
  await pane().getByText('milliseconds since the set was switched on (read only)').waitFor()
})

test('a knob of a service is found by its name', async () => {
  await open()
  await field('Search knobs').fill('service.#1.name')
  await type('service.#1.name', '<b>Bold</b>')
  await shown.page.getByRole('tab', {name: 'Channels'}).click()
  await shown.page.getByRole('row').filter({hasText: '<b>Bold</b>'}).waitFor()
  assert.equal((await shown.tv.state()).windows.main.service.name, '<b>Bold</b>')
})

test('a latency is set, told and removed', async () => {
  await open()
  await field('Call').selectOption('latency.IServiceNavigation::GetTvMode')
  await type('Milliseconds', '250')
  await pane().getByRole('form', {name: 'Set a latency'}).getByRole('button', {name: 'Set'}).click()
  await field('latency.IServiceNavigation::GetTvMode').waitFor()
  assert.equal(await shown.tv.get('latency.IServiceNavigation::GetTvMode'), '250')
  await field('Remove latency.IServiceNavigation::GetTvMode').click()
  await pane().getByText('No call has a latency').waitFor()
  assert.equal(await shown.tv.get('latency.IServiceNavigation::GetTvMode'), '0')
})

test('settings keys are added, changed and removed', async () => {
  await open()
  const settings = async () => Object.fromEntries((await shown.tv.settings()).map(({key, value}) => [key, value]))
  await field('Key').fill('a <i>key</i>')
  await field('Kind').selectOption('int')
  await field('Value').fill('seven')
  await pane().getByRole('form', {name: 'Set a settings key'}).getByRole('button').click()
  await pane().getByRole('alert').filter({hasText: 'is no whole number'}).waitFor()
  await field('Value').fill('7')
  await field('Value').press('Enter')
  await pane().getByText('a <i>key</i>', {exact: true}).waitFor()
  assert.equal((await settings())['a <i>key</i>'], 7)
  await type('Value of a <i>key</i>', '8')
  await shown.tv.setSetting('told', 'text')
  await field('Value of told').waitFor()
  assert.equal((await settings())['a <i>key</i>'], 8)
  await field('Remove a <i>key</i>').click()
  await field('Remove a <i>key</i>').waitFor({state: 'detached'})
  assert.equal((await settings())['a <i>key</i>'], undefined)
})

test('a snapshot is saved as a file, and brings the set back', async () => {
  await open()
  await type('Country', '5')
  await until(async () => (await shown.tv.state()).country === 5)
  const saved = shown.page.waitForEvent('download')
  await pane().getByRole('button', {name: 'Snapshot'}).click()
  const file = await (await saved).path()
  assert.equal(JSON.parse(await fs.readFile(file, 'utf8')).state.country, 5)
  await type('Country', '6')
  await field('Snapshot to restore').setInputFiles({name: 'tv.json', mimeType: 'application/json', buffer: await fs.readFile(file)})
  await pane().getByText('Restored from tv.json').waitFor()
  assert.equal((await shown.tv.state()).country, 5)
  await field('Snapshot to restore').setInputFiles({name: 'no.json', mimeType: 'application/json', buffer: Buffer.from('{"version": 9}')})
  await pane().getByRole('status').filter({hasText: 'version'}).waitFor()
  await field('Snapshot to restore').setInputFiles({name: 'no.txt', mimeType: 'text/plain', buffer: Buffer.from('nothing')})
  await pane().getByText('no.txt is not a snapshot').waitFor()
})

test('a restart ends latencies', async () => {
  await open()
  await shown.tv.set('latency.vconf_get_int', 5)
  await field('latency.vconf_get_int').waitFor()
  await pane().getByRole('button', {name: 'Restart'}).click()
  await pane().getByText('Restarted').waitFor()
  await field('latency.vconf_get_int').waitFor({state: 'detached'})
})

test('a reset asks first', async () => {
  await open()
  await shown.tv.set('country', 9)
  await pane().getByRole('button', {name: 'Reset'}).click()
  await pane().getByRole('dialog').getByRole('button', {name: 'Cancel'}).click()
  assert.equal((await shown.tv.state()).country, 9)
  await pane().getByRole('button', {name: 'Reset'}).click()
  await pane().getByRole('dialog').getByRole('button', {name: 'Reset'}).click()
  await pane().getByText('Reset to the built-in set').waitFor()
  assert.equal((await shown.tv.state()).country, 3)
})
