// SPDX-License-Identifier: MIT
/*
 * The script tv.js: creates a TV in memory, and under a name the object that apps have on a set, before the next script
 * of the page runs.
 *
 *   <script src="tv.js" data-name="tvWindow"></script>
 *   <script src="tv.js?name=tvWindow"></script>
 *
 * Other attributes are data-app-id, data-widget-id and data-wait, which may be false; in the query they are appId,
 * widgetId and wait. Without a name the script defines the global `empWindow`, whose functions do the same step by
 * step.
 */
import {inflate} from './inflate.js'
import {clientOf, makeSet, optionsOf} from './memory.js'
import {base64, size} from './bytes.js'
import './window.js'

const {EmpTvError, install} = globalThis[Symbol.for('emp-window/2')]

function bytesOf(text) {
  if (Uint8Array.fromBase64) return Uint8Array.fromBase64(text)  // ten times faster, but missing in older browsers
  const characters = atob(text)
  const bytes = new Uint8Array(characters.length)
  for (let at = 0; at < bytes.length; ++at) bytes[at] = characters.charCodeAt(at)
  return bytes
}

/** Advice when a browser does not compile the module. */
function adviceOn(cause) {
  if (/content security policy|unsafe-eval/i.test(cause.message)) {
    return "the page's Content-Security-Policy wants 'wasm-unsafe-eval' in script-src"
  }
  return "where the browser refuses to compile this much at once, take createTv of the module 'emp-window', which compiles " +
    'in the background, and start the app behind it'
}

let compiled

function module() {
  const bytes = compiled ? undefined : inflate(bytesOf(base64), size)
  try {
    return compiled ??= new WebAssembly.Module(bytes)
  } catch (cause) {
    throw new EmpTvError('module', `tv.js: the module can't be compiled: ${cause.message}; ${adviceOn(cause)}`, {cause})
  }
}

/** Like the module's `createTv`, but synchronous, and without persistence. */
function createTv(all) {
  const options = optionsOf(all)
  if (options.persist !== undefined) throw new TypeError("tv.js keeps no TV; createTv of the module 'emp-window' does")
  const {tv, opened} = clientOf(makeSet(module(), options), options)
  opened.catch(() => {})  // calls of the client report it
  return tv
}

function installWindow(target, options = {}) {
  return install(target, options)
}

/** The options in the script's line. */
function given({src, dataset}) {
  const query = src ? Object.fromEntries(new URL(src).searchParams) : {}
  const {name, appId, widgetId, wait} = {...query, ...dataset}
  return {name, appId, widgetId, wait: wait !== 'false'}
}

const {name, ...options} = given(globalThis.document?.currentScript ?? {})
if (!name) globalThis.empWindow = {createTv, installWindow, EmpTvError}
else if (!globalThis[name]?.isVirtual) installWindow(globalThis, {...options, name, tv: createTv(options)})
