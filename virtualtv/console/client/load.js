/*
 * Finds and compiles the set's module, once for all sets of a page or process.
 */
import './window.js'

const {EmpTvError} = globalThis[Symbol.for('emp-window/2')]

const own = new URL('./emp-window.wasm', import.meta.url)

/** A compiler's result, from wherever the bytes come. */
async function compileAt(url) {
  if (url.protocol === 'file:') return WebAssembly.compile(await (await import('./node-file.js')).read(url))
  const response = await fetch(url)
  if (!response.ok) throw new Error(`status ${response.status}`)
  const isTyped = response.headers.get('content-type') === 'application/wasm'
  return isTyped ? WebAssembly.compileStreaming(response) : WebAssembly.compile(await response.arrayBuffer())
}

/** What to do about an error, where that is known. */
function adviceOn(cause) {
  return /content security policy|unsafe-eval/i.test(cause.message)
    ? "; the page's Content-Security-Policy wants 'wasm-unsafe-eval' in script-src" : ''
}

async function compile(given) {
  const isPlace = given instanceof URL || typeof given === 'string'
  try {
    if (isPlace) return await compileAt(new URL(given, globalThis.location?.href ?? import.meta.url))
    return await WebAssembly.compile(given)
  } catch (cause) {
    const where = isPlace ? String(given) : 'given'
    throw new EmpTvError('module', `createTv: the module ${where} can't be loaded: ${cause.message}${adviceOn(cause)}`, {cause})
  }
}

let loading

/** The compiled module. @param given  a module, its bytes or its address; by default the one that comes with this file */
export function load(given) {
  if (given instanceof WebAssembly.Module) return given
  if (given !== undefined) return compile(given)
  loading ??= compile(own).catch(error => {
    loading = undefined  // so that the next call tries again
    throw error
  })
  return loading
}
