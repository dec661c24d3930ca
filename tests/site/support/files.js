// SPDX-License-Identifier: MIT
// A server of static files that knows nothing but media types.
import {once} from 'node:events'
import {readFile} from 'node:fs/promises'
import http from 'node:http'
import {extname, join, normalize} from 'node:path'
import {gzipSync} from 'node:zlib'

const types = {
  '.html': 'text/html; charset=utf-8', '.css': 'text/css', '.js': 'text/javascript', '.svg': 'image/svg+xml', '.wasm': 'application/wasm',
}

export class FileServer {
  /** The requested paths. */
  requests = []
  /** Pages that take precedence over files, by path. */
  pages = new Map()
  /** Number of bytes sent in bodies. */
  bytes = 0
  #folders
  #headers

  /** @param folders  folders by path, such as {'/tv/': folder} @param headers  headers of all answers */
  constructor(folders, headers = {}) {
    this.#folders = folders
    this.#headers = headers
  }

  async listen(port = 0) {
    this.server = http.createServer((request, response) => this.#answer(request, response))
    this.server.listen(port, '127.0.0.1')
    await once(this.server, 'listening')
    this.port = this.server.address().port
    this.origin = `http://127.0.0.1:${this.port}`
    return this
  }

  close() {
    this.server.closeAllConnections()
    this.server.close()
  }

  async #answer(request, response) {
    const {pathname} = new URL(request.url, 'http://localhost')
    this.requests.push(pathname)
    const body = this.pages.get(pathname) ?? await this.#read(pathname)
    if (!body) {
      response.writeHead(404, this.#headers).end('not found')
      return
    }
    const isPacked = /\bgzip\b/.test(request.headers['accept-encoding'] ?? '')
    const sent = isPacked ? gzipSync(body) : body
    this.bytes += sent.length
    response.writeHead(200, {...this.#headers, 'Content-Type': types[extname(pathname)] ?? types['.html'], 'Cache-Control': 'max-age=600',
      ...isPacked && {'Content-Encoding': 'gzip'}})
    response.end(sent)
  }

  async #read(pathname) {
    const base = Object.keys(this.#folders).filter(base => pathname.startsWith(base)).sort((one, other) => other.length - one.length)[0]
    if (base === undefined) return undefined
    const path = normalize(join('/', decodeURIComponent(pathname.slice(base.length)), pathname.endsWith('/') ? 'index.html' : ''))
    return readFile(join(this.#folders[base], path)).catch(() => undefined)
  }
}
