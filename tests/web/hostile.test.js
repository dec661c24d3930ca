// SPDX-License-Identifier: MIT
// Names from untrusted sources, in every pane: they are shown as text, and the layout stays intact.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {Console, useBrowser} from './support/console.js'

const names = [
  '<script>document.title = "has run"</script>', '<img src=x onerror="document.title = \'has run\'">', '"\'`${1}&amp;', '\u202Ereversed\u202C \u05D0\u05D1\u05D2',
  'x'.repeat(500), 'long words '.repeat(50), '', '\u200F\u200F', '\u0301\u0301\u0301 \u200B\uFEFF', 'line\nbreak\ttab',
]

let shown
useBrowser()
afterEach(() => shown.close())

for (const [what, size] of [['at 1280 x 720', {width: 1280, height: 720}], ['on a phone', {width: 390, height: 844}]]) {
  test(`names of services and applications, ${what}`, async () => {
    shown = await Console.open({size})
    const {services} = await shown.tv.services({antenna: 'terrestrial', limit: names.length})
    const texts = names.map(name => JSON.stringify(name).replace(/[\u007f-\uffff]/g, unit => `\\u${unit.charCodeAt(0).toString(16).padStart(4, '0')}`))
    for (const [at, {key}] of services.entries()) await shown.tv.set(`service.#${key}.name`, texts[at])
    for (const [at, {id}] of services.entries()) {
      await shown.tv.window.SetChannelByServiceid(id)
      await shown.tv.Execute(names[at])
      if (/^[\u200F]*$/.test(names[at])) await shown.pane('Screen').getByText('(no name)').first().waitFor()
      for (const tab of await shown.page.getByRole('tab').all()) {
        if (at % 3 === 0) await tab.click()
      }
      assert.notEqual(await shown.page.title(), 'has run')
      const over = await shown.page.evaluate(() => document.documentElement.scrollWidth - innerWidth)
      assert.ok(over <= 0, `${names[at].slice(0, 40)}: ${over} px too wide`)
    }
    const panes = shown.page.locator('.pane:not([hidden])')
    for (const pane of await panes.all()) {
      const over = await pane.evaluate(element => element.scrollWidth - element.clientWidth)
      assert.ok(over <= 1, `${await pane.getAttribute('id')}: ${over} px too wide`)
    }
  })
}
