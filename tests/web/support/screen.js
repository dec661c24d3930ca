// SPDX-License-Identifier: MIT
// What tests examine on the page's screen.
import assert from 'node:assert/strict'
import {Console} from './console.js'

/** Opens a page. @param how  as for `Console.open` @return the page and its screen */
export async function openScreen(how) {
  const shown = await Console.open(how)
  return {shown, screen: new Screen(shown.page)}
}

/** The screen of a page. */
export class Screen {
  constructor(page) {
    this.page = page
  }

  /** An element with the role img. */
  image(name) {
    return this.page.getByRole('img', {name, exact: true})
  }

  /** Waits until the description of an img contains a text. */
  async described(name, text) {
    await this.page.locator(`[role=img][aria-label="${name}"][aria-description*="${text}"]`).waitFor({state: 'attached'})
  }

  /** Fails unless an img is at a position in the app's space. */
  async assertPlace(name, [x, y, width, height]) {
    const space = await this.image('App space').boundingBox()
    const box = await this.image(name).boundingBox()
    const scale = 960 / space.width
    const place = {x: (box.x - space.x) * scale, y: (box.y - space.y) * scale, width: box.width * scale, height: box.height * scale}
    for (const [side, wanted] of Object.entries({x, y, width, height})) {
      assert.ok(Math.abs(place[side] - wanted) < 0.1, `${name}: ${side} ${place[side]}, not ${wanted}`)
    }
  }

  /** The visible colour at a position in the app's space: 'black', or red, green and blue. */
  async colourAt(x, y) {
    return await this.page.evaluate(([left, top]) => {
      const frame = document.querySelector('.frame').getBoundingClientRect()
      const at = [frame.left + left / 960 * frame.width, frame.top + top / 540 * frame.height]
      const over = [...document.querySelectorAll('emp-picture')].filter(({canvas}) => !canvas.hidden).map(picture => ({picture, box: picture.getBoundingClientRect()}))
        .filter(({box}) => at[0] >= box.left && at[0] < box.right && at[1] >= box.top && at[1] < box.bottom)
        .sort((one, other) => other.picture.style.zIndex - one.picture.style.zIndex)[0]
      if (!over) return 'black'
      const {canvas} = over.picture
      const [red, green, blue] = canvas.getContext('2d').getImageData((at[0] - over.box.left) / over.box.width * canvas.width, (at[1] - over.box.top) / over.box.height * canvas.height, 1, 1).data
      return red + green + blue === 0 ? 'black' : `${red} ${green} ${blue}`
    }, [x, y])
  }

  /** The content of a window's canvas, as a text. */
  drawing(id = 'main') {
    return this.page.evaluate(key => [...document.querySelectorAll('emp-picture')].find(picture => picture.shown.id === key).canvas.toDataURL(), id)
  }
}
