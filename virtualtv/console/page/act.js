// SPDX-License-Identifier: MIT
/*
 * The actions of a person on the page. Each is a call on the wire. The foot of the page shows the last one with its
 * error, if any, and lets the person copy it as a transcript line, a message or code.
 */
import {store} from './store.js'

/** @type {import('../client.js').Tv | undefined} */
let connected

/** The TV that this page controls. */
export function tv() {
  if (!connected) throw new Error('the page has no connection yet')
  return connected
}

/** @param {import('../client.js').Tv} client */
export function useTv(client) {
  connected = client
}

const patience = 1000  // ms until an action is shown although it has no answer yet

/**
 * Makes a call, and records it as the last action. Errors are shown, not thrown.
 * @param {string} method @param {any} [params] @return {Promise<any>} the call's result, undefined if it failed
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

/** Shows an error of the page itself, in the same place. @param {string} what @param {string} reason */
export function complain(what, reason) {
  store.set('deed', {method: what, params: undefined, error: reason})
}
