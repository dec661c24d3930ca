// SPDX-License-Identifier: MIT
/*
 * What a person does on the page. Each deed is a call on the wire; the last one stands in the foot of the page, with its
 * error where it failed, and can be copied as a transcript line, a message or code.
 */
import {store} from './store.js'

/** @type {import('../client.js').Tv | undefined} */
let connected

/** The TV that this page works. */
export function tv() {
  if (!connected) throw new Error('the page has no connection yet')
  return connected
}

/** @param {import('../client.js').Tv} client */
export function useTv(client) {
  connected = client
}

const patience = 1000  // ms until a deed without an answer is told

/**
 * Does something: makes a call and notes it as the last deed. What fails is shown, not thrown.
 * @param {string} method @param {any} [params] @return {Promise<any>} the call's result, undefined where it failed
 */
export async function act(method, params = {}) {
  const impatience = setTimeout(() => store.set('deed', {method, params, isUnderWay: true}), patience)
  try {
    const result = await tv().call(method, params)
    store.set('deed', {method, params, result})
    return result
  } catch (error) {
    const {message, data} = /** @type {import('../client.js').EmpRpcError} */ (error)
    store.set('deed', {method, params, error: message, data})
    return undefined
  } finally {
    clearTimeout(impatience)
  }
}

/** Runs a command of the plug-in on the page's own engine. @param {string} name @param {...(string | number)} parameters */
export function command(name, ...parameters) {
  return act(`window.${name}`, parameters)
}

/** Tells something that went wrong on the page itself, in the same place. @param {string} what @param {string} reason */
export function complain(what, reason) {
  store.set('deed', {method: what, params: undefined, error: reason})
}
