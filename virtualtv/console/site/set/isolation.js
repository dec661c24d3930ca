// SPDX-License-Identifier: MIT
/*
 * Lets the page share memory with the set's worker, on any static server: once the site's service worker serves the
 * page, it adds the headers that browsers require for that. It also caches the site's files, and fetches new versions.
 */

import {isNoted, note} from './notes.js'

const tried = 'emp-window.isolating'  // the page has already been reloaded for this
const patience = 20_000  // ms for the service worker to fetch the site's files
const renewing = 10_000  // ms for a new version to take over
const visits = 500  // ms between two visits

/** Reloads the page. @return {Promise<never>} */
function reload() {
  location.reload()
  return new Promise(() => {})
}

/**
 * Asks a waiting service worker to take over. It does so only if this is the site's only page.
 * @param {ServiceWorker} worker @return {Promise<boolean>}  whether it does
 */
function takesOver(worker) {
  return new Promise(resolve => {
    const {port1, port2} = new MessageChannel()
    port1.onmessage = ({data}) => resolve(data)
    worker.postMessage('take over if alone', [port2])
  })
}

/**
 * Fulfilled when a service worker is installed and will serve the page next time.
 * @param {ServiceWorkerRegistration} registration
 * @return {Promise<void>}
 */
function installed({installing, waiting, active}) {
  return new Promise((resolve, reject) => {
    const worker = active ?? waiting ?? installing
    const look = () => {
      if (worker?.state === 'activating' || worker?.state === 'activated') resolve()
      if (!worker || worker.state === 'redundant') reject(new Error('a file of the site is missing, or of another version'))
    }
    worker?.addEventListener('statechange', look)
    look()
    setTimeout(() => reject(new Error(`it takes more than ${patience / 1000} s`)), patience)
  })
}

/** @return {Promise<ServiceWorkerRegistration>} */
const register = () => navigator.serviceWorker.register(new URL('../service-worker.js', import.meta.url))

/** Creates a short-lived client of the version that serves the page. */
function visit() {
  const visitor = new Worker(new URL('notes.js', import.meta.url), {type: 'module'})
  setTimeout(() => visitor.terminate(), visits / 2)
}

/**
 * Lets a waiting new version of the site take over, if no other page needs the old one. Chromium sometimes delays this
 * until a client of the old version ends, hence the visits.
 * @param {ServiceWorkerRegistration} registration @return {Promise<boolean>} true if a new version has taken over
 */
async function renewed({waiting}) {
  if (!waiting) return false
  const changed = new Promise(resolve => navigator.serviceWorker.addEventListener('controllerchange', () => resolve(true), {once: true}))
  if (!await takesOver(waiting)) return false
  const visiting = setInterval(visit, visits)
  const late = new Promise(resolve => setTimeout(resolve, renewing, false))
  const has = await Promise.race([changed, late])
  clearInterval(visiting)
  return has
}

/**
 * Isolates the page if the browser can do that. Reloads the page if isolation requires it, or if a new version took
 * over.
 * @return {Promise<string | undefined>} why the page is not isolated
 */
export async function isolate() {
  const isIsolated = globalThis.crossOriginIsolated && Boolean(globalThis.SharedArrayBuffer)
  if (!navigator.serviceWorker) return isIsolated ? undefined : 'its address is neither of this machine (http://localhost) nor https'
  try {
    const registration = await register()
    if (await renewed(registration)) return reload()
    const isTried = isNoted(tried) ?? true
    if (isIsolated || isTried) note(tried, false)
    if (isIsolated) return undefined
    if (isTried) return 'this browser does not do that'
    await installed(registration)
  } catch (error) {
    const problem = `the site's service worker can't be installed: ${/** @type {Error} */ (error).message}`
    if (!isIsolated) return problem
    console.warn(`emp-window: ${problem}. The site can't be used offline.`)
    return undefined
  }
  note(tried, true)
  return reload()
}
