// SPDX-License-Identifier: MIT
/*
 * Caches the site's files, all of one version. tools/site puts their list before this code, as `files`: {path:
 * integrity}. To all answers it adds the headers that isolate the page, so that the page can share memory with the
 * set's worker.
 */
/* global files */

const front = `emp-window ${self.registration.scope} `
const name = front + version
const isolating = {
  'Cross-Origin-Opener-Policy': 'same-origin',
  'Cross-Origin-Embedder-Policy': 'require-corp',
  'Cross-Origin-Resource-Policy': 'same-origin',
}

/** Fetches a file of this version; the browser's cached copy is used if its hash matches. */
async function fetchFile(path) {
  const integrity = files[path]
  try {
    return await fetch(new Request(path, {integrity}))
  } catch {
    return fetch(new Request(path, {integrity, cache: 'reload'}))
  }
}

async function fetchAll() {
  const cache = await caches.open(name)
  await Promise.all(Object.keys(files).map(async path => {
    const response = await fetchFile(path)
    if (!response.ok) throw new Error(`${path}: status ${response.status}`)
    await cache.put(path, response)
  }))
}

async function removeOthers() {
  const names = await caches.keys()
  await Promise.all(names.filter(other => other.startsWith(front) && other !== name).map(other => caches.delete(other)))
}

/** The path of a request relative to the site, as in the list. */
function pathOf(url) {
  const path = url.href.slice(self.registration.scope.length).replace(/[?#].*$/, '')
  return path === '' ? 'index.html' : path
}

/** An answer with more headers. */
function withHeaders(response, more) {
  if (response.status === 0) return response  // a redirect, which the browser follows
  const headers = new Headers(response.headers)
  for (const [header, value] of Object.entries(more)) headers.set(header, value)
  return new Response(response.body, {status: response.status, statusText: response.statusText, headers})
}

async function answer(request, url) {
  const path = pathOf(url)
  const kept = Object.hasOwn(files, path) ? await (await caches.open(name)).match(path) : undefined
  const isAskedNot = url.searchParams.get('thread') === 'page'
  return withHeaders(kept ?? await fetch(request), isAskedNot ? {} : isolating)
}

self.addEventListener('install', event => event.waitUntil(fetchAll()))
self.addEventListener('activate', event => event.waitUntil(removeOthers().then(() => self.clients.claim())))

self.addEventListener('fetch', event => {
  const {request} = event
  const url = new URL(request.url)
  if (request.method !== 'GET' || !url.href.startsWith(self.registration.scope)) return
  event.respondWith(answer(request, url))
})

// A new version waits until no page of the site needs the old one. A single starting page requests the change.
self.addEventListener('message', event => {
  event.waitUntil((async () => {
    const pages = await self.clients.matchAll({type: 'window', includeUncontrolled: true})
    const isAlone = pages.filter(({frameType}) => frameType !== 'nested').length <= 1
    event.ports[0].postMessage(isAlone)
    if (isAlone) self.skipWaiting()
  })())
})
