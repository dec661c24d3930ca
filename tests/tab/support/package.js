// SPDX-License-Identifier: MIT
// The package under test, and a site that serves it.
import {once} from 'node:events'
import {readFile} from 'node:fs/promises'
import http from 'node:http'
import {extname, join, normalize} from 'node:path'
import {fileURLToPath, pathToFileURL} from 'node:url'

export const directory = process.env.EMP_WINDOW_PACKAGE
if (!directory) throw new Error('EMP_WINDOW_PACKAGE is to name the directory that tools/wasm has made')

/** A file of the package, in a form for `import`. */
export const urlOf = name => pathToFileURL(join(directory, name)).href

export const {EmpTvError, connect, createTv, forgetTv, installWindow} = await import(urlOf('client.js'))

const types = {
  '.html': 'text/html; charset=utf-8', '.js': 'text/javascript', '.mjs': 'text/javascript', '.wasm': 'application/wasm',
}
const folders = {
  '/package/': directory,
  '/client/': fileURLToPath(new URL('../../client/support', import.meta.url)),
  '/tab/': fileURLToPath(new URL('.', import.meta.url)),
}

/** Serves the package beneath /package/, the modules for pages of tests beneath /client/ and /tab/, and pages added
 *  by tests. */
export class PackageSite {
  /** By path: a text, or {headers, body}. */
  pages = new Map([['/', '<!doctype html><title>app</title>']])

  async listen() {
    this.server = http.createServer((request, response) => this.#serve(request, response))
    this.server.listen(0, '127.0.0.1')
    await once(this.server, 'listening')
    this.address = `http://127.0.0.1:${this.server.address().port}`
    return this
  }

  close() {
    this.server.closeAllConnections()
    this.server.close()
  }

  async #serve({url}, response) {
    const {pathname} = new URL(url, this.address)
    const page = this.pages.get(pathname)
    if (page !== undefined) {
      const {headers = {}, body = page} = page
      response.writeHead(200, {'Content-Type': types['.html'], ...headers}).end(body)
      return
    }
    const [prefix, folder] = Object.entries(folders).find(([start]) => pathname.startsWith(start)) ?? []
    try {
      const bytes = await readFile(join(folder, normalize(`/${pathname.slice(prefix.length)}`)))
      // Loading a module from a page without an origin counts as a request across origins.
      response.writeHead(200, {'Content-Type': types[extname(pathname)] ?? 'text/plain', 'Access-Control-Allow-Origin': '*'}).end(bytes)
    } catch {
      response.writeHead(404).end()
    }
  }
}
