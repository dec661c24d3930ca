// SPDX-License-Identifier: MIT
/* What a command answered, in words: its kind, its value, and whether that is a failure. */
import {bytesShown, front} from './shown.js'
import {store} from './store.js'

/** @typedef {{accepted: boolean, kind: string, value?: any, bytes?: string, length?: number} | null} Reply */

/** Failure codes by command, as the list of commands has them. @type {{list: any[], byName: Map<string, any>}} */
let known = {list: [], byName: new Map()}

/** A command as the catalogue describes it; undefined where it does not. @param {string} name */
export function commandNamed(name) {
  const list = store.get('commands')
  if (known.list !== list) known = {list, byName: new Map(list.map(command => [command.name, command]))}
  return known.byName.get(name)
}

/** Why a reply is a failure; undefined where it is none. @param {string} name @param {Reply} reply @return {string | undefined} */
export function failureOf(name, reply) {
  if (!reply) return 'It could not be run.'
  if (!reply.accepted) return 'The engine refused the command.'
  if (reply.kind !== 'int') return undefined
  return commandNamed(name)?.failures.find((/** @type {any} */ failure) => failure.value === reply.value)?.description
}

/**
 * What went wrong with a command that answers 1 where it was done, in a line; undefined where nothing did.
 * @param {string} name @param {Reply | undefined} reply @return {string | undefined}
 */
export function troubleOf(name, reply) {
  if (!reply) return `${name} got no reply; the line at the bottom says why`
  const failure = failureOf(name, reply)
  if (reply.value === 1 && !failure) return undefined
  return `${name}: ${reply.value ?? ''} ${failure ?? 'The command failed.'}`
}

/** The value alone, a text. @param {Reply} reply */
export function valueOf(reply) {
  return reply?.bytes !== undefined ? bytesShown(reply.bytes) : String(reply?.value ?? '')
}

/** As a transcript has it, in one line. @param {Reply} reply @param {number} [most]  characters of the value */
export function replyShown(reply, most = 120) {
  if (!reply) return 'could not be run'
  if (reply.kind === 'empty') return reply.accepted ? 'empty' : 'refused'
  const value = front(valueOf(reply), most)
  const text = reply.kind === 'unicode' ? `unicode "${value}"` : `${reply.kind} ${value}`
  return reply.accepted ? text : `refused ${text}`
}

/** The value as a document, where it is one: an object or a list. @param {Reply} reply */
export function documentIn(reply) {
  const text = reply?.value
  if (typeof text !== 'string' || !/^\s*[[{]/.test(text)) return undefined
  try {
    return JSON.parse(text)
  } catch {
    return undefined
  }
}
