// SPDX-License-Identifier: MIT
import {act} from './act.js'
import {store} from './store.js'

/**
 * Makes a call, and returns the reason if it was refused.
 * @param {string} method
 * @param {any} [params]
 * @return {Promise<string | undefined>} the reason
 */
export async function attempt(method, params) {
  const result = await act(method, params)
  return result === undefined ? store.get('deed')?.error ?? 'it failed' : undefined
}
