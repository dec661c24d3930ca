// SPDX-License-Identifier: MIT
/*
 * Decides which apps may run over the picture on a site, and how they reach the set: apps of the site's origin, with
 * its window.js. Replaces the module of the page that comes from a server.
 */
import {whyHere} from './connection.js'
import {h} from './dom.js'

const site = new URL('..', import.meta.url)

/** The line for the head of an app's page. */
export function scriptLine() {
  return `<script src="${site.pathname}window.js?name=tvWindow"></script>`
}

/**
 * What an app of an origin needs besides the line: nothing.
 * @param {string} _origin @return {{text: string, name: string, copy: string} | undefined}
 */
export function need(_origin) {
  return undefined
}

/** Describes which apps the page allows. */
export async function letIn() {
  const here = `Apps of ${site.origin} run here, on the set of this tab. For others, use tv.js, which gives an app a set of its own, or emp-window serve.`
  const why = await whyHere
  return why === undefined ? here
    : `${here} The set is on the page's own thread, so a long list stops the page while it is imported: the page shares no memory with a worker, since ${why}.`
}

/** True if browsers allow a page in a frame of an isolated page. @param {URL} url @return {Promise<boolean>} */
async function isIsolating(url) {
  if (url.href.startsWith(site.href)) return true  // the service worker adds the headers
  const {headers} = await fetch(url, {method: 'HEAD'})
  return headers.has('Cross-Origin-Embedder-Policy')
}

/** Why an address can't run; null if it can. @param {URL} url @return {Promise<import('./dom.js').Child>} */
export async function problemOf(url) {
  if (url.origin !== site.origin) return `Only apps of ${site.origin} can run here, since no server allows others. They can use tv.js, or emp-window serve.`
  if (url.pathname === site.pathname || url.pathname === `${site.pathname}index.html`) return 'This is the page itself.'
  try {
    if (!globalThis.crossOriginIsolated || await isIsolating(url)) return null
  } catch {
    return null  // The frame shows the server's answer.
  }
  return [h('p', {class: 'fail'}, 'Browsers allow pages outside of ', h('code', {class: 'name'}, site.pathname), ' here only with the header Cross-Origin-Embedder-Policy: require-corp.'),
    h('p', null, 'Put the app beneath that folder, have its server send the header, or ',
      h('a', {href: `${site.href}?thread=page`}, 'open this page with the set on its own thread'), '.')]
}

/** Why the policy of the page refused a frame. @param {string} address */
export const refusal = address => `This page allows no frames of ${address}: apps must have the origin ${site.origin}.`
