// SPDX-License-Identifier: MIT
/*
 * Creates TVs in memory: loads the module, creates a set from it, persists the set if requested, and connects a client.
 */
import {load} from './load.js'
import {clientOf, makeSet, optionsOf} from './memory.js'

/** Creates a set from stored data, or else from the caller's options. */
function setFrom(module, options, snapshot, unusable) {
  if (snapshot === undefined) return makeSet(module, options)
  try {
    return makeSet(module, {...options, snapshot, list: undefined})
  } catch (error) {
    throw error.what === 'snapshot' ? unusable(error) : error
  }
}

async function createKept(key, module, options) {
  if (typeof key !== 'string' || key === '') throw new TypeError(`a text is wanted as the key of persist, not '${key}'`)
  const {keepSet} = await import('./kept.js')
  const {set, keeper} = await keepSet(key, (snapshot, unusable) => setFrom(module, options, snapshot, unusable))
  const {tv, opened} = clientOf(set, options, () => keeper.close())
  await opened
  return Object.assign(tv, {saved: () => keeper.saved()})
}

/** See `createTv` in client.js. */
export async function createTv(all) {
  const {persist, module: given, ...options} = optionsOf(all)
  const module = await load(given)
  if (persist !== undefined) return createKept(persist, module, options)
  const {tv, opened} = clientOf(makeSet(module, options), options)
  await opened
  return tv
}

/** Removes the data stored under a key. */
export async function forgetTv(key) {
  const {forget} = await import('./kept.js')
  await forget(key)
}
