// SPDX-License-Identifier: MIT
/*
 * Decides which apps may run over the picture, and how they reach the TV. A site without a server replaces this module.
 */
import {h} from './dom.js'
import {rememberedToken} from './memory.js'
import {allowedOrigins, isAllowed, ownApps} from './origins.js'

/** The line for the head of an app's page. */
export function scriptLine() {
  const hasToken = rememberedToken() !== undefined
  return `<script src="${location.origin}/window.js?name=tvWindow${hasToken ? '&token=TOKEN' : ''}"></script>`
}

/**
 * What an app of an origin needs besides the line: an explanation, and a text to copy; undefined if nothing.
 * @param {string} origin
 * @return {{text: string, name: string, copy: string} | undefined}
 */
export function need(origin) {
  return {text: 'To allow the app\'s origin, start the server with:', name: 'option', copy: `emp-window serve --allow-origin '${origin}'`}
}

/** Describes which apps the page allows. */
export async function letIn() {
  const allowed = await allowedOrigins()
  return allowed?.length ? `Allowed now: ${allowed.join(', ')}` : 'Only apps of this page\'s own origin are allowed now.'
}

/** Why an address can't run; null if it can. @param {URL} url @return {Promise<import('./dom.js').Child>} */
export async function problemOf(url) {
  const allowed = await allowedOrigins()
  if (url.origin === location.origin) {
    return url.pathname.startsWith(ownApps.pathname) ? null : 'From this server, only the apps listed above can run over the picture.'
  }
  if (!allowed) return 'The server does not answer. Try again once the page is connected.'
  if (isAllowed(url, allowed)) return null
  return [h('p', {class: 'fail'}, 'The server does not allow pages of ', h('code', {class: 'name'}, url.origin), '.'),
    h('p', null, 'Restart it with the option below, then reload this page.')]
}

/** Why the policy of the page refused a frame. @param {string} address */
export const refusal = address =>
  `This page does not allow frames of ${address}. Was the server restarted with --allow-origin? Then reload this page.`
