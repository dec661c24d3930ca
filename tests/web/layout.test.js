// SPDX-License-Identifier: MIT
// The layout of the page: its panes are regions or tabs, can be resized, and stay as a person left them.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown?.close())

const regions = ['Screen', 'Remote control', 'Inputs', 'Timeline', 'Command']
const tabs = ['Channels', 'Tracks', 'Planes', 'Faults', 'App', 'Set']

test('panes are regions, those on the right tab panels', async () => {
  shown = await Console.open()
  for (const name of regions) assert.ok(await shown.page.getByRole('region', {name, exact: true}).isVisible(), name)
  for (const name of tabs) {
    await shown.page.getByRole('tab', {name, exact: true}).click()
    assert.ok(await shown.page.getByRole('tabpanel', {name, exact: true}).isVisible(), name)
  }
  assert.equal(await shown.page.getByRole('tabpanel').count(), 1)
})

test('arrow keys go from tab to tab, and the last one is chosen again after a reload', async () => {
  shown = await Console.open()
  await shown.page.getByRole('tab', {name: 'Channels'}).focus()
  await shown.page.keyboard.press('ArrowRight')
  await shown.page.keyboard.press('ArrowRight')
  assert.ok(await shown.page.getByRole('tabpanel', {name: 'Planes'}).isVisible())
  await shown.page.reload()
  await shown.page.getByRole('tabpanel', {name: 'Planes'}).waitFor()
})

for (const [what, size] of [['a phone', {width: 390, height: 844}], ['200 % zoom of 1280 x 720', {width: 640, height: 360}]]) {
  test(`on ${what} all panes but the screen are tabs, and nothing scrolls sideways`, async () => {
    shown = await Console.open({size})
    for (const name of [...regions.slice(1), ...tabs]) {
      await shown.page.getByRole('tab', {name, exact: true}).click()
      assert.ok(await shown.page.getByRole('tabpanel', {name, exact: true}).isVisible(), name)
      const over = await shown.page.evaluate(() => document.documentElement.scrollWidth - innerWidth)
      assert.ok(over <= 0, `${name}: ${over} px`)
    }
    const search = await shown.page.getByRole('combobox', {name: 'Search'}).boundingBox()
    assert.ok(search.y + search.height <= (await shown.pane('Screen').boundingBox()).y, 'the head lies over the screen')
  })
}

test('a line between panes moves by mouse and by keys, and stays where it was put', async () => {
  shown = await Console.open()
  const width = async () => (await shown.pane('Channels').boundingBox()).width
  const line = shown.page.getByRole('separator', {name: 'Width of the right pane'})
  const before = await width()
  await line.focus()
  await shown.page.keyboard.press('ArrowLeft')
  assert.equal(await width(), before + 16)
  const box = await line.boundingBox()
  await shown.page.mouse.move(box.x + 2, box.y + 100)
  await shown.page.mouse.down()
  await shown.page.mouse.move(box.x - 48, box.y + 100)
  await shown.page.mouse.up()
  assert.equal(await width(), before + 66)
  await shown.page.reload()
  await shown.page.getByRole('tabpanel', {name: 'Channels'}).waitFor()
  assert.equal(await width(), before + 66)
})

test('where a person forces colours, what is chosen is seen, and the screen is black all the same', async () => {
  shown = await Console.open()
  const {page} = shown
  await page.emulateMedia({forcedColors: 'active'})
  const framed = part => part.evaluate(element => getComputedStyle(element).outlineStyle === 'solid')
  for (const [chosen, other] of [
    [page.getByRole('tab', {name: 'Channels'}), page.getByRole('tab', {name: 'Planes'})],
    [page.getByRole('button', {name: 'TV', exact: true}), page.getByRole('button', {name: 'Menu', exact: true})],
    [page.getByRole('button', {name: '0 Antenna', exact: true}), page.getByRole('button', {name: '35 SCART', exact: true})],
  ]) assert.deepEqual([await framed(chosen), await framed(other)], [true, false])
  assert.equal(await page.locator('.frame').evaluate(frame => getComputedStyle(frame).backgroundColor), 'rgb(0, 0, 0)')
})
