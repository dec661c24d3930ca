// SPDX-License-Identifier: MIT
/* Lines that a person types: a command with its parameters, a leading `+` for a parameter list, or a shell line. */
import {splitWords} from '../transcript.js'
import {commandLine} from './deed.js'
import {remember, remembered} from './memory.js'
import {store} from './store.js'

/** @typedef {{kind: 'shell', line: string} | {kind: 'command', name: string, parameters: string[], isList: boolean}} Typed */

/** @param {string} line @return {Typed | undefined} undefined for an invalid line, such as one with an open quote */
export function parse(line) {
  const text = line.replace(/^\s*>?\s*/, '')
  if (text.startsWith('.')) return {kind: 'shell', line: text}
  const isList = text.startsWith('+')
  const words = splitWords(isList ? text.slice(1) : text)
  return words && {kind: 'command', name: words[0] ?? '', parameters: words.slice(1), isList}
}

/** The line of a command. @param {string} name @param {string[]} parameters @param {boolean} isList */
export function lineOf(name, parameters, isList) {
  const line = commandLine(name, parameters, isList)
  return isList ? `+${line.slice(2)}` : line.slice(2)
}

/** Commands whose names contain the typed text; those that start with it come first. @param {string} typed */
export function completions(typed) {
  const wanted = typed.toLowerCase().replaceAll('_', '')
  const places = store.get('commands').map(command => ({command, at: command.name.toLowerCase().replaceAll('_', '').indexOf(wanted)}))
  return places.filter(({at}) => at >= 0).sort((one, other) => Math.min(one.at, 1) - Math.min(other.at, 1)).map(({command}) => command)
}

const most = 200      // lines in the history
const longest = 10_000  // characters of a line

/** The lines that were run in this browser, oldest first. @return {string[]} */
export function readHistory() {
  const lines = remembered('history', [])
  return Array.isArray(lines) ? lines.filter(line => typeof line === 'string') : []
}

/** @param {string[]} history @param {string} line @return {string[]} the history with it */
export function withLine(history, line) {
  if (line.length > longest || history.at(-1) === line) return history
  const lines = [...history, line].slice(-most)
  remember('history', lines)
  return lines
}
