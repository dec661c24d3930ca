// Who can't see the page or use a mouse can use it all the same: axe-core finds nothing, in any pane, in light and dark.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {axe} from '../client/support/packages.js'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown.close())

/** What axe-core finds wrong, a line each. */
async function findings() {
  const {violations} = await shown.page.evaluate(() => globalThis.axe.run(document, {resultTypes: ['violations']}))
  return violations.flatMap(({id, help, nodes}) => nodes.map(({html, any}) => `${id}: ${help}: ${html.slice(0, 200)} ${any[0]?.message ?? ''}`))
}

for (const scheme of ['light', 'dark']) {
  test(`nothing is found in any pane, ${scheme}`, async () => {
    shown = await Console.open({scheme})
    await shown.tv.fault('IServiceNavigation::GetTvMode', {result: 0, times: 1})
    await shown.tv.window.SetChannel(3, 0)
    await shown.tv.window.GetTVMode()
    await shown.tv.window.SetWindow(1)
    await shown.tv.window.SetSource(0)
    await shown.page.evaluate(axe)
    for (const tab of await shown.page.getByRole('tab').all()) {
      await tab.click()
      assert.deepEqual(await findings(), [], await tab.textContent())
    }
  })
}

test('on a phone, too', async () => {
  shown = await Console.open({size: {width: 390, height: 844}})
  await shown.page.evaluate(axe)
  for (const tab of await shown.page.getByRole('tab').all()) {
    await tab.click()
    assert.deepEqual(await findings(), [], await tab.textContent())
  }
})
