// SPDX-License-Identifier: MIT
/* A call on the wire, in the three notations that people use. */

/** Quotes a word for a transcript if needed. @param {unknown} value */
export function word(value) {
  const text = String(value).replace(/[\ud800-\udbff](?![\udc00-\udfff])|(?<![\ud800-\udbff])[\udc00-\udfff]/g, '\ufffd')
  if (/^[\w@%+=:,./-]+$/.test(text)) return text
  if (/[\0-\x1f\x7f-\x9f]/.test(text)) return `$'${text.replace(/['\\]/g, '\\$&').replace(/[\0-\x1f\x7f-\x9f]/g, bytesOf)}'`
  return `'${text.replaceAll("'", "'\\''").replaceAll('\\x', "\\''x")}'`
}

/** A character as escaped bytes of a transcript. @param {string} unit */
function bytesOf(unit) {
  return Array.from(new TextEncoder().encode(unit), byte => `\\x${byte.toString(16).toUpperCase().padStart(2, '0')}`).join('')
}

/** The name of a command as the first word of a line, quoted so that it can't be read as anything else. @param {string} name */
function firstWord(name) {
  return /^[.+>]/.test(word(name)) ? `'${name}'` : word(name)
}

/** A command in a transcript. @param {string} name @param {any[]} parameters @param {boolean} isList */
export function commandLine(name, parameters, isList = false) {
  return [isList ? '>+' : '>', firstWord(name), ...parameters.map(word)].join(' ')
}

/** @param {any} params  in their order */
const valuesOf = params => Array.isArray(params) ? params : Object.values(params ?? {})

/** @type {{[method: string]: (params: any) => string}} */
const dotCommands = {
  'tv.set': ({name, value}) => `.set ${word(name)} ${word(value)}`,
  'tv.setSetting': ({key, value}) => `.vconf set ${word(key)} ${typeof value === 'number' ? 'int' : 'str'} ${word(value)}`,
  'tv.removeSetting': ({key}) => `.vconf unset ${word(key)}`,
  'tv.fault': ({operation, nth, times, result, outputs, window}) => ['.fault', word(operation),
    nth !== undefined && `nth=${nth}`, times !== undefined && `times=${times}`, result !== undefined && `result=${word(result)}`,
    window !== undefined && `window=${window}`,
    ...Object.entries(outputs ?? {}).map(([name, value]) => `out.${name}=${word(value)}`)].filter(Boolean).join(' '),
  'tv.clearFaults': ({id}) => `.fault clear${id === undefined ? '' : ` ${id}`}`,
  'tv.restart': () => '.restart',
  'tv.reset': () => '.reset',
  'tv.run': ({line}) => line,
}

/** True for methods that run a command by name. @param {string} method */
const isByName = method => method === 'window.execute' || method === 'window.executeWithParamList'

/** The line of a transcript with the same effect; undefined if there is none. @param {string} method @param {any} params */
export function transcriptLine(method, params) {
  if (isByName(method)) return commandLine(params.name, params.parameters ?? [], method.endsWith('List'))
  if (method.startsWith('window.')) return commandLine(method.slice('window.'.length), valuesOf(params))
  const line = dotCommands[method]?.(params)
  return line && `> ${line}`
}

/** @param {string} method @param {any} params */
export function message(method, params) {
  return JSON.stringify({jsonrpc: '2.0', id: 1, method, params})
}

/** The same with the JavaScript client. @param {string} method @param {any} params */
export function clientCode(method, params) {
  const literal = (/** @type {any} */ value) => JSON.stringify(value)
  if (isByName(method)) {
    const {name, parameters = []} = params
    return method.endsWith('List') ? `await tv.executeWithParamList(${literal(name)}, ${literal(parameters)})`
      : `await tv.Execute(${[name, ...parameters].map(literal).join(', ')})`
  }
  if (method.startsWith('window.')) return `await tv.${method}(${valuesOf(params).map(literal).join(', ')})`
  return `await tv.call(${literal(method)}, ${literal(params)})`
}
