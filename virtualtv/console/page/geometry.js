// SPDX-License-Identifier: MIT
/* Rectangles of planes. Apps place them in a space of 960 x 540; the set's base screen has 1920 x 1080. */

/** @typedef {{x: number, y: number, width: number, height: number}} Rect */
/** @typedef {{width: number, height: number}} Ratio */

/** Pixels of the base screen per pixel of the app's space. */
const basePerApp = 2
export const sides = /** @type {const} */ (['x', 'y', 'width', 'height'])
export const appSpace = {x: 0, y: 0, width: 960, height: 540}
export const baseScreen = {x: 0, y: 0, width: 1920, height: 1080}

/** Converts from the app's space to the base screen, which is exact. @param {number} length */
export const toBase = length => length * basePerApp

/**
 * Converts from the base screen to the app's space: adds half a pixel, then truncates towards 0.
 * @param {number} length
 */
export const toApp = length => Math.trunc((length + 1) / basePerApp) + 0

/**
 * Applies a function to all four numbers of a rectangle.
 * @param {Rect} rect
 * @param {(length: number) => number} change
 * @return {Rect}
 */
export function eachOf({x, y, width, height}, change) {
  return {x: change(x), y: change(y), width: change(width), height: change(height)}
}

/** A rectangle in the form `0,0 960x540`. @param {Rect} rect */
export const rectText = ({x, y, width, height}) => `${x},${y} ${width}x${height}`

/** @param {Rect} one @param {Rect} other @return {Rect | null} null if they do not overlap */
export function common(one, other) {
  const x = Math.max(one.x, other.x)
  const y = Math.max(one.y, other.y)
  const width = Math.min(one.x + one.width, other.x + other.width) - x
  const height = Math.min(one.y + one.height, other.y + other.height) - y
  return width > 0 && height > 0 ? {x, y, width, height} : null
}

/** @param {Rect} rect @param {number} x @param {number} y */
export function has(rect, x, y) {
  return x >= rect.x && y >= rect.y && x < rect.x + rect.width && y < rect.y + rect.height
}

/**
 * The largest rectangle of a ratio, centred in another one; fractions of a pixel are truncated, as on the set.
 * @param {Rect} outer
 * @param {Ratio} ratio
 * @return {Rect}
 */
export function fitted(outer, ratio) {
  const isTooWide = outer.width * ratio.height > outer.height * ratio.width
  const width = isTooWide ? Math.trunc(outer.height * ratio.width / ratio.height) : outer.width
  const height = isTooWide ? outer.height : Math.trunc(outer.width * ratio.height / ratio.width)
  return {x: outer.x + Math.trunc((outer.width - width) / 2), y: outer.y + Math.trunc((outer.height - height) / 2), width, height}
}

/**
 * How far a rectangle extends beyond the edges of a space.
 * @param {Rect} rect @param {Rect} space
 * @return {{edge: string, by: number, isWhole: boolean}[]} for each edge that it crosses; `isWhole`: the whole
 *   rectangle is outside, and `by` is its distance
 */
export function beyond(rect, space) {
  const sides = [
    {edge: 'left', reach: space.x - rect.x, size: rect.width},
    {edge: 'upper', reach: space.y - rect.y, size: rect.height},
    {edge: 'right', reach: rect.x + rect.width - space.x - space.width, size: rect.width},
    {edge: 'lower', reach: rect.y + rect.height - space.y - space.height, size: rect.height},
  ]
  return sides.filter(({reach}) => reach > 0).map(({edge, reach, size}) => {
    const isWhole = reach >= size
    return {edge, by: isWhole ? reach - size : reach, isWhole}
  })
}

/** The same in words. @param {Rect} rect @param {Rect} space @return {string} empty if it is within */
export function beyondText(rect, space) {
  const sides = beyond(rect, space)
  const outside = sides.filter(({isWhole}) => isWhole)
  if (outside.length > 0) return `outside: ${outside.map(({edge, by}) => `${by} px from the ${edge} edge`).join(', ')}`
  return sides.map(({edge, by}) => `${by} px beyond the ${edge} edge`).join(', ')
}
