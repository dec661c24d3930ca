// SPDX-License-Identifier: MIT
/* Describes a reply: its kind, its value, and whether it is a failure. */
import {bytesShown, front} from './shown.js'
import {store} from './store.js'

/** @typedef {{accepted: boolean, kind: string, value?: any, bytes?: string, length?: number} | null} Reply */

/** The list of commands, and the commands by name. @type {{list: any[], byName: Map<string, any>}} */
let known = {list: [], byName: new Map()}

/** A command's description in the catalogue; undefined for unknown commands. @param {string} name */
export function commandNamed(name) {
  const list = store.get('commands')
  if (known.list !== list) known = {list, byName: new Map(list.map(command => [command.name, command]))}
  return known.byName.get(name)
}

/** Why a reply is a failure; undefined if it is not. @param {string} name @param {Reply} reply @return {string | undefined} */
export function failureOf(name, reply) {
  if (!reply) return 'The command could not be run.'
  if (!reply.accepted) return 'The engine refused the command.'
  if (reply.kind !== 'int') return undefined
  return commandNamed(name)?.failures.find((/** @type {any} */ failure) => failure.value === reply.value)?.description
}

/**
 * The error of a command that returns 1 on success, in one line; undefined on success.
 * @param {string} name @param {Reply | undefined} reply @return {string | undefined}
 */
export function troubleOf(name, reply) {
  if (!reply) return `${name} got no reply; the line at the bottom says why`
  const failure = failureOf(name, reply)
  if (reply.value === 1 && !failure) return undefined
  return `${name}: ${reply.value ?? ''} ${failure ?? 'The command failed.'}`
}

/** The value alone, as a text. @param {Reply} reply */
export function valueOf(reply) {
  return reply?.bytes !== undefined ? bytesShown(reply.bytes) : String(reply?.value ?? '')
}

/**
 * The reply in one line, in the form of a transcript.
 * @param {Reply} reply
 * @param {number} [most]  maximum number of characters of the value
 */
export function replyShown(reply, most = 120) {
  if (!reply) return 'could not be run'
  if (reply.kind === 'empty') return reply.accepted ? 'empty' : 'refused'
  const value = front(valueOf(reply), most)
  const text = reply.kind === 'unicode' ? `unicode "${value}"` : `${reply.kind} ${value}`
  return reply.accepted ? text : `refused ${text}`
}

/** The value as a document, if it is an object or a list. @param {Reply} reply */
export function documentIn(reply) {
  const text = reply?.value
  if (typeof text !== 'string' || !/^\s*[[{]/.test(text)) return undefined
  try {
    return JSON.parse(text)
  } catch {
    return undefined
  }
}
