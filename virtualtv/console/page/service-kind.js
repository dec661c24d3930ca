// SPDX-License-Identifier: MIT
/*
 * Finds out whether services without a picture are radio or data services. The state does not contain that, but their
 * fields do.
 */
import {tv} from './act.js'
import {store} from './store.js'

/** Kinds by key, for one version of the list of services. @type {Map<number, string>} */
let known = new Map()
let version = -1

/** @param {number} type  the TV service's number of a channel type */
const kindOfType = type => type >= 3 && type <= 5 ? 'radio' : type >= 6 && type <= 8 ? 'data' : 'television'

/**
 * The kind of a service; undefined until it is known.
 * @param {any} service
 * @param {() => void} onknown  called when it becomes known
 */
export function kindOf(service, onknown) {
  if (version !== store.get('services')) {
    version = store.get('services')
    known = new Map()
  }
  const {key} = service
  const kind = known.get(key)
  if (kind === undefined) ask(key, known).then(onknown)
  return kind || undefined
}

/** @param {number} key @param {Map<number, string>} into */
async function ask(key, into) {
  into.set(key, '')
  try {
    into.set(key, kindOfType(Number(await tv().get(`service.#${key}.type`))))
  } catch {
    into.delete(key)  // The service or the connection is gone.
  }
}
