// SPDX-License-Identifier: MIT
// The remote control: by mouse and keyboard, for the TV and for the app that receives its keys.
import assert from 'node:assert/strict'
import {readFile} from 'node:fs/promises'
import {afterEach, test} from 'node:test'
import {until} from '../client/support/wait.js'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown?.close())

const {commands} = JSON.parse(await readFile(new URL('../../docs/commands.json', import.meta.url), 'utf8'))

const names = ['0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'Channel up', 'Channel down', 'Previous channel', 'Source', 'Audio',
  'Subtitles', 'Mute picture', 'Picture-in-picture', 'OK', 'Up', 'Down', 'Left', 'Right', 'Back', 'Exit', 'Info', 'Guide', 'Menu',
  'Red', 'Green', 'Yellow', 'Blue', 'Play', 'Pause', 'Stop']

const remote = () => shown.page.getByRole('region', {name: 'Remote control'})
const press = name => remote().getByRole('button', {name, exact: true}).click()
const says = text => remote().getByRole('status').filter({hasText: text}).waitFor()
const main = async () => (await shown.tv.state()).windows.main

test('its buttons are called as on any remote, and are seen whole beside the screen', async () => {
  shown = await Console.open()
  for (const name of names) assert.ok(await remote().getByRole('button', {name, exact: true}).isVisible(), name)
  const column = await shown.page.locator('.left').boundingBox()
  const box = await remote().boundingBox()
  assert.ok(box.y + box.height < column.y + column.height, 'the remote ends above the end of its column')
})

test('each button names a key that works it, and no two the same', async () => {
  shown = await Console.open()
  const {page} = shown
  await page.evaluate(() => {
    window.pressed = []
    addEventListener('emp-key', event => window.pressed.push(event.detail.name))
  })
  const address = new URL('page/apps/geometry/index.html', page.url()).href
  await page.evaluate(async app => (await import('/page/store.js')).store.set('app', {address: app, name: 'Test card'}), address)
  await press('App')
  const keys = []
  for (const name of names) {
    const button = remote().getByRole('button', {name, exact: true})
    keys.push((await button.getAttribute('aria-keyshortcuts')).split(' ')[0])
    if (!/^\d$/.test(name)) assert.ok((await button.getAttribute('title')).includes(keys.at(-1)), name)
  }
  assert.equal(new Set(keys).size, names.length)
  for (const key of keys) await page.keyboard.press(key.length === 1 ? key.toLowerCase() : key)
  const expected = names.map(name => name === 'Previous channel' ? 'Back' : name)
  assert.deepEqual(await page.evaluate(() => window.pressed), expected, 'for an app Backspace is Back')
  for (const name of ['Play', 'Pause', 'Stop', 'Back']) {
    const letter = await remote().getByRole('button', {name, exact: true}).locator('u').textContent()
    assert.equal(letter, keys[names.indexOf(name)], `${name} shows its letter`)
  }
})

test('digits tune after a pause, at once with OK, and can be taken back', async () => {
  shown = await Console.open()
  await press('3')
  await says(/^3_$/)
  await says('3 Lighthouse News')
  assert.equal((await main()).service.major, 3)
  await press('1')
  await press('2')
  await shown.page.keyboard.press('Backspace')
  await says(/^1_$/)
  await press('OK')
  await says('1 Lighthouse One')
  await shown.page.keyboard.press('7')
  await shown.page.keyboard.press('Escape')
  await says(/^[^_]*$/)
  assert.equal((await main()).service.major, 1)
})

test('four digits are a whole number, and one that no channel has says so', async () => {
  shown = await Console.open()
  for (const digit of '9876') await shown.page.keyboard.press(digit)
  const {failures} = commands.find(({name}) => name === 'SetChannel')
  await says(`SetChannel: 0 ${failures.find(({code}) => code === 0).means}`)
  assert.equal((await main()).service.major, 1)
})

test('a number without a minor one finds the first channel that has it', async () => {
  shown = await Console.open()
  await press('5')
  await press('OK')
  await says('5-1 Granite Sport 1')
})

test('a number that only another antenna has is not tuned to, and says which', async () => {
  shown = await Console.open()
  for (const key of ['1', '1', 'Enter']) await shown.page.keyboard.press(key)
  await says('No channel 11 on terrestrial. Choose TV mode cable for 11 Attic Movies')
  assert.equal((await main()).service.name, 'Lighthouse One')
  await shown.page.getByLabel('TV mode').first().selectOption('Cable')
  await until(async () => (await main()).tvMode.antenna === 1, 'the TV mode is Cable')
  for (const key of ['1', '1', 'Enter']) await shown.page.keyboard.press(key)
  await says('11 Attic Movies')
})

test('steps keep to the antenna on screen, in channel order, and go round at the ends', async () => {
  shown = await Console.open()
  await shown.page.keyboard.press('PageDown')
  await says('Quay Street Community')  // it has no number, so it comes last
  await shown.page.keyboard.press('PageUp')
  await says('1 Lighthouse One')
  const {services} = await shown.tv.services({antenna: 'cable'})
  const order = services.filter(({hidden, locked, id}) => id && !hidden && !locked).map(({name}) => name)
  await shown.tv.window.SetChannelByServiceid(services[0].id)
  for (const name of [...order.slice(1), order[0]]) {
    await shown.page.keyboard.press('PageUp')
    await says(name)
    assert.equal((await main()).tvMode.antenna, 1)
  }
})

test('channels up, down and back again', async () => {
  shown = await Console.open()
  await press('Channel up')
  await says('2 Lighthouse Two')
  await shown.page.keyboard.press('PageUp')
  await says('3 Lighthouse News')
  await shown.page.keyboard.press('PageDown')
  await says('2 Lighthouse Two')
  await shown.page.keyboard.press('Backspace')
  await says('3 Lighthouse News')
  assert.equal((await main()).service.name, 'Lighthouse News')
})

test('Source goes through the inputs that are plugged in and can be shown', async () => {
  shown = await Console.open()
  for (const text of ['27 PC', '31 HDMI 1', '32 HDMI 2', '35 SCART', '0 Antenna']) {
    await press('Source')
    await says(text)
  }
  await shown.page.keyboard.press('s')
  await says('27 PC')
  assert.equal((await main()).source.name, 'PC')
})

test('Audio and Subtitles go through the tracks', async () => {
  shown = await Console.open()
  await press('Audio')
  await says('Audio 1 deu German')
  assert.equal((await main()).tracks.audioInUse, 1)
  for (const text of ['Subtitle 0 eng English', 'Subtitle 1 deu German', 'Subtitle 2 eng English', 'Subtitles -1 off']) {
    await shown.page.keyboard.press('t')
    await says(text)
  }
  assert.equal((await main()).tracks.subtitleInUse, -1)
})

test('Mute picture hides the picture and shows it', async () => {
  shown = await Console.open()
  await press('Mute picture')
  await says('Picture hidden')
  assert.equal((await main()).plane.muted, true)
  await press('Mute picture')
  await says('Picture shown')
  assert.equal((await main()).plane.muted, false)
})

test('Picture-in-picture opens and closes the second window, and leaves the keys on the main one', async () => {
  shown = await Console.open()
  await press('Picture-in-picture')
  await says('Picture-in-picture 2 Lighthouse Two')
  assert.equal((await shown.tv.state()).windows.pip.source.number, 0)
  await press('Channel up')
  await says('2 Lighthouse Two')
  assert.equal((await main()).service.major, 2)
  await press('Picture-in-picture')
  await says('Picture-in-picture closed')
  assert.equal((await shown.tv.state()).windows.pip.source.number, -1)
})

test('what fails says why', async () => {
  shown = await Console.open()
  await shown.tv.set('main.service', 0)
  await press('Channel up')
  await says('SetChannel_Seek: -1 Nothing is on screen to step from')
  await press('OK')
  await says('OK is for apps')
  await shown.page.keyboard.press('i')
  await says('Info is for apps')
})

test('who types into a field or works a list or a tab does not work the remote', async () => {
  shown = await Console.open()
  const search = shown.page.getByLabel('Search channels')
  await search.fill('')
  await search.pressSequentially('3')
  await shown.page.keyboard.press('Enter')
  await shown.page.getByRole('grid').focus()
  await shown.page.keyboard.press('s')
  await shown.page.getByRole('tab', {name: 'Channels'}).focus()
  await shown.page.keyboard.press('s')
  assert.equal(await remote().getByRole('status').textContent(), '')
  assert.equal((await main()).source.number, 0)
})

test('with an app running and the switch on App, keys go to the app', async () => {
  shown = await Console.open()
  assert.ok(await remote().getByRole('button', {name: 'App', exact: true}).isDisabled())
  await shown.page.evaluate(async () => {
    const {store} = await import('/page/store.js')
    store.set('app', {address: new URL('page/apps/geometry/index.html', location.href).href, name: 'Test card'})
    window.got = []
    addEventListener('emp-key', event => window.got.push(event.detail.name))
  })
  await press('App')
  await press('Red')
  await press('3')
  for (const name of ['ArrowUp', 'Enter', 'Backspace', 'Escape', 's']) await shown.page.keyboard.press(name)
  assert.deepEqual(await shown.page.evaluate(() => window.got), ['Red', '3', 'Up', 'OK', 'Back', 'Exit', 'Source'])
  assert.equal((await main()).service.major, 1)
  await press('TV')
  await press('Channel up')
  await says('2 Lighthouse Two')
})
