// SPDX-License-Identifier: MIT
/*
 * Finds and compiles the set's module, once for all sets of a page or process.
 */
import {compile, compileNow} from './module.js'
import './window.js'

const {EmpTvError, memory} = globalThis[Symbol.for('emp-window/2')]

const own = new URL('./emp-window.wasm', import.meta.url)

/** Advice for a known error. */
function adviceOn({message}) {
  if (/content security policy|unsafe-eval/i.test(message)) {
    return "; the page's Content-Security-Policy wants 'wasm-unsafe-eval' in script-src"
  }
  // Some servers answer with their page for missing files.
  return /magic|0asm/i.test(message) ? '; that is no WebAssembly: the option module names where emp-window.wasm is' : ''
}

async function compileFrom(source) {
  try {
    const isFile = source instanceof URL && source.protocol === 'file:'
    // Functions are compiled when they are called, so compiling synchronously is faster here than on other threads.
    return isFile ? compileNow(await (await import('./node-file.js')).read(source)) : await compile(source)
  } catch (cause) {
    const where = source instanceof URL || typeof source === 'string' ? ` (${source})` : ''
    throw new EmpTvError('module', `${memory}: ${cause.message}${where}${adviceOn(cause)}`, {cause})
  }
}

let loading

/**
 * Returns the compiled module.
 * @param given  a module, its bytes or its address; by default the module beside this file
 */
export function load(given) {
  if (given !== undefined) return compileFrom(given)
  loading ??= compileFrom(own).catch(error => {
    loading = undefined  // the next call tries again
    throw error
  })
  return loading
}
