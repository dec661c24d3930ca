// SPDX-License-Identifier: MIT
// What the page loads: everything comes from its own server, and its policy forbids anything else.
import assert from 'node:assert/strict'
import {afterEach, test} from 'node:test'
import {Console, useBrowser} from './support/console.js'

let shown
useBrowser()
afterEach(() => shown?.close())

test('all comes from the server, without a 404, in at most 250 KB', async () => {
  shown = await Console.open()
  const answers = []
  shown.page.on('response', response => answers.push(response))
  await shown.page.reload({waitUntil: 'networkidle'})
  await shown.page.getByText(/\d+ engines?, \d+ clients?/).waitFor()
  let bytes = 0
  for (const answer of answers) {
    assert.equal(answer.status(), 200, answer.url())
    assert.equal(new URL(answer.url()).origin, shown.server.address)
    const {responseBodySize, responseHeadersSize} = await answer.request().sizes()
    bytes += responseBodySize + responseHeadersSize
  }
  console.log(`transferred bytes: ${bytes} in ${answers.length} answers`)
  assert.ok(bytes <= 250_000, String(bytes))
})

test('a script in the markup, code in a text and requests to other machines are refused', async () => {
  shown = await Console.open()
  const refused = await shown.page.evaluate(async () => {
    const directives = new Set()
    document.addEventListener('securitypolicyviolation', event => directives.add(event.effectiveDirective))
    const script = document.createElement('script')
    script.textContent = 'window.hasRun = true'
    document.body.append(script)
    await fetch('http://other.test/').catch(() => {})
    const image = new Image()
    image.src = 'http://other.test/image.png'
    await new Promise(resolve => { image.onerror = resolve })
    let evaluated = true
    try { evaluated = eval('1 + 1') === 2 } catch { evaluated = false }
    await new Promise(resolve => setTimeout(resolve))
    return {hasRun: 'hasRun' in window, evaluated, directives: [...directives].sort()}
  })
  assert.deepEqual(refused, {hasRun: false, evaluated: false, directives: ['connect-src', 'img-src', 'script-src', 'script-src-elem']})
  shown.tolerated = /Content Security Policy|Note that|Failed to fetch|ERR_/
})
