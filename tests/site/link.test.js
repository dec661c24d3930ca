// SPDX-License-Identifier: MIT
// A set in a link.
import assert from 'node:assert/strict'
import {test} from 'node:test'
import {deflateRawSync} from 'node:zlib'
import {ask, base, how, open, serve, useVisits, where} from './support/visit.js'

useVisits()

const packed = text => deflateRawSync(text).toString('base64url')

/** Presses the button. @return what it puts on the clipboard */
async function copyLink(page) {
  await page.context().grantPermissions(['clipboard-read', 'clipboard-write'])
  await page.getByRole('tab', {name: 'Set', exact: true}).click()
  await page.getByRole('button', {name: 'Copy link'}).click()
  await page.getByText(/^Copied a link of [\d,]+ characters$/).waitFor()
  return page.evaluate(() => navigator.clipboard.readText())
}

test('a link brings the set to another browser, where what is kept stays as it is', async () => {
  await serve()
  const page = await open()
  await ask(page, 'tv.set', {name: 'region', value: 2})
  const link = await copyLink(page)
  assert.match(link, /\/tv\/#state=[\w-]+$/)
  const other = await open()
  const before = await ask(other, 'tv.snapshot')
  const brought = await open({address: link, beside: other})
  assert.equal((await ask(brought, 'tv.state')).region, 2)
  await where(brought).getByText('State: in this tab, from a link, not stored').waitFor()
  await other.reload()
  await where(other).getByText('stored in this browser').waitFor()
  assert.deepEqual(await ask(other, 'tv.snapshot'), before)
})

for (const [what, state, problem] of [
  ['no compressed text', 'abc', 'it is damaged or cut off'],
  ['letters that are none of base64', '%%%', 'it is damaged or cut off'],
  ['a text that is no JSON', packed('hello'), 'it is damaged or cut off'],
  ['a document that is no snapshot', packed('{"a":1}'), 'not a snapshot of a set'],
  ['more than a snapshot may have', packed(' '.repeat(33 * 1024 * 1024)), 'it holds more than 33554432 bytes'],
]) {
  test(`a link with ${what} is told, and the built-in set is there`, async () => {
    const {origin} = await serve()
    const page = await open({address: `${origin}${base}#state=${state}`})
    await where(page).getByText('link unusable, not stored').waitFor()
    await (await how(page)).getByText(`The link can't be used: ${problem}`).waitFor()
    await (await how(page)).getByText('This is the built-in set, not stored').waitFor()
  })
}
