// SPDX-License-Identifier: MIT
/* The noise over the picture when the signal fades. */

const size = 128
/** @type {HTMLCanvasElement | undefined} */
let tile

/** A tile of grey grains, made once. */
function grains() {
  if (tile) return tile
  tile = document.createElement('canvas')
  tile.width = tile.height = size
  const context = /** @type {CanvasRenderingContext2D} */ (tile.getContext('2d'))
  const image = context.createImageData(size, size)
  for (let at = 0; at < image.data.length; at += 4) {
    image.data.fill(Math.random() * 255, at, at + 3)
    image.data[at + 3] = 255
  }
  context.putImageData(image, 0, 0)
  return tile
}

/** @param {CanvasRenderingContext2D} context @return {CanvasPattern} */
export function noisePattern(context) {
  return /** @type {CanvasPattern} */ (context.createPattern(grains(), 'repeat'))
}
