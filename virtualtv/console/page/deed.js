/* A call on the wire in the three ways in which people write it down. */

/** @param {unknown} value  a word of a transcript, quoted where it needs to be */
export function word(value) {
  const text = String(value)
  if (/^[\w@%+=:,./-]+$/.test(text)) return text
  if (/[\u0000-\u001f\u007f]/.test(text)) {
    return `$'${text.replace(/['\\]/g, '\\$&').replace(/[\u0000-\u001f\u007f]/g, unit => `\\x${unit.charCodeAt(0).toString(16).padStart(2, '0')}`)}'`
  }
  return `'${text.replaceAll("'", "'\\''")}'`
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

/** The line of a transcript that does the same; undefined where there is none. @param {string} method @param {any} params */
export function transcriptLine(method, params) {
  if (method.startsWith('window.')) return ['>', method.slice('window.'.length), ...valuesOf(params).map(word)].join(' ')
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
  if (method.startsWith('window.')) return `await tv.${method}(${valuesOf(params).map(literal).join(', ')})`
  return `await tv.call(${literal(method)}, ${literal(params)})`
}
