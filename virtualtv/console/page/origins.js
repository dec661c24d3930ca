// SPDX-License-Identifier: MIT
/* Decides which pages may be shown in a frame, according to the policy that the server sends for this page. */

/** Origins, or patterns such as `http://localhost:*`, that the server allows; undefined if it does not answer. */
export async function allowedOrigins() {
  try {
    const {headers} = await fetch(new URL('.', location.href), {method: 'HEAD'})
    const rule = headers.get('Content-Security-Policy')?.split(';').find(part => part.trim().startsWith('frame-src'))
    return rule ? rule.trim().split(/\s+/).slice(1).filter(source => source !== "'self'") : []
  } catch {
    return undefined
  }
}

/** Parses an address that a person typed. @param {string} text @return {URL | undefined} */
export function addressOf(text) {
  const whole = /^[a-z][a-z0-9+.-]*:\/\//i.test(text.trim()) ? text.trim() : `http://${text.trim()}`
  const url = URL.parse?.(whole) ?? (URL.canParse(whole) ? new URL(whole) : undefined)
  return url && /^https?:$/.test(url.protocol) ? url : undefined
}

/** @param {URL} url @param {string[]} sources */
export function isAllowed(url, sources) {
  return sources.some(source => source.endsWith(':*')
    ? `${url.protocol}//${url.hostname}` === source.slice(0, -':*'.length) : url.origin === source)
}

/** The folder of the apps included in the page. */
export const ownApps = new URL('page/apps/', new URL('.', location.href))
