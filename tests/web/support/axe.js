// SPDX-License-Identifier: MIT
// The problems that axe-core finds on a page for people who can't see it or use a mouse.
import {axe} from '../../client/support/packages.js'

/** A line for each problem. */
export async function findings(page) {
  if (!await page.evaluate(() => globalThis.axe)) await page.evaluate(axe)
  const {violations} = await page.evaluate(() => globalThis.axe.run(document, {resultTypes: ['violations']}))
  return violations.flatMap(({id, help, nodes}) => nodes.map(({html, any}) => `${id}: ${help}: ${html.slice(0, 200)} ${any[0]?.message ?? ''}`))
}
