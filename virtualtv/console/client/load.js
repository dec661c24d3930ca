// SPDX-License-Identifier: MIT
/*
 * Finds and compiles the set's module, once for all sets of a page or process.
 */
import {compile, compileNow} from './module.js'
import './window.js'

const {EmpTvError, memory} = globalThis[Symbol.for('emp-window/2')]

const own = new URL('./emp-window.wasm', import.meta.url)

/** What to do about an error, where that is known. */
function adviceOn({message}) {
  if (/content security policy|unsafe-eval/i.test(message)) {
    return "; the page's Content-Security-Policy wants 'wasm-unsafe-eval' in script-src"
  }
  // A server that answers its page for files that it has not.
  return /magic|0asm/i.test(message) ? '; that is no WebAssembly: the option module names where emp-window.wasm is' : ''
}

async function compileFrom(source) {
  try {
    const isFile = source instanceof URL && source.protocol === 'file:'
    // Functions are compiled as they are called, so doing it at once is faster here than by other threads.
    return isFile ? compileNow(await (await import('./node-file.js')).read(source)) : await compile(source)
  } catch (cause) {
    const where = source instanceof URL || typeof source === 'string' ? ` (${source})` : ''
    throw new EmpTvError('module', `${memory}: ${cause.message}${where}${adviceOn(cause)}`, {cause})
  }
}

let loading

/** The compiled module. @param given  a module, its bytes or its address; by default the one that comes with this file */
export function load(given) {
  if (given !== undefined) return compileFrom(given)
  loading ??= compileFrom(own).catch(error => {
    loading = undefined  // so that the next call tries again
    throw error
  })
  return loading
}
