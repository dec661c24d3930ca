// SPDX-License-Identifier: MIT
// People who can't see the page or use a mouse can use it: axe-core finds nothing in any pane, in light and dark.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {findings} from './support/axe.js'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown.close())

for (const scheme of ['light', 'dark']) {
  test(`nothing is found in any pane, ${scheme}`, async () => {
    shown = await Console.open({scheme})
    await shown.tv.fault('IServiceNavigation::GetTvMode', {result: 0, times: 1})
    await shown.tv.window.SetChannel(3, 0)
    await shown.tv.window.GetTVMode()
    await shown.tv.window.SetWindow(1)
    await shown.tv.window.SetSource(0)
    for (const tab of await shown.page.getByRole('tab').all()) {
      await tab.click()
      assert.deepEqual(await findings(shown.page), [], await tab.textContent())
    }
  })
}

test('on a phone, too', async () => {
  shown = await Console.open({size: {width: 390, height: 844}})
  for (const tab of await shown.page.getByRole('tab').all()) {
    await tab.click()
    assert.deepEqual(await findings(shown.page), [], await tab.textContent())
  }
})
