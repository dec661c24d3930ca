// SPDX-License-Identifier: MIT
/*
 * The synchronous object that a web application has on the set, connected to the virtual TV. As a classic script in the
 * head of a page, served by the virtual TV itself, it creates the object under a name before the app's first line runs:
 *
 *   <script src="http://127.0.0.1:8090/window.js?name=tvWindow"></script>
 *
 * The query names the object; it may also have appId, widgetId and token. client.js imports the same file for the code
 * that `installWindow` and `connect` share. The file must work as script and as module, so it has no imports and
 * exports: its definitions are under a symbol of the global object, where a second copy on the same page finds them.
 */
(() => {
  'use strict'

  /**
   * The connection broke, could not be made, or was closed, or the server refused the request. If `sent` is true, the
   * TV may have run the call, which is never sent again; if false, the call has not run.
   */
  class EmpConnectionError extends Error {
    constructor(message, {cause, status, sent = false} = {}) {
      super(message, cause === undefined ? undefined : {cause})
      this.name = 'EmpConnectionError'
      this.sent = sent
      if (status !== undefined) this.status = status
    }
  }

  /** The virtual TV answered a call with a JSON-RPC error. */
  class EmpRpcError extends Error {
    constructor({code, message, data}, method) {
      const reason = data?.reason
      super(reason && reason !== message ? `${message}: ${reason}` : message)
      this.name = 'EmpRpcError'
      this.code = code
      this.data = data
      this.method = method
    }
  }

  /** A TV in memory can't be created, or has ended by itself. `what` names the cause; client.d.ts lists the causes. */
  class EmpTvError extends Error {
    constructor(what, message, {cause, ...more} = {}) {
      super(message, cause === undefined ? undefined : {cause})
      Object.assign(this, {name: 'EmpTvError', what, ...more})
    }
  }

  /** The name of a set without a server in messages. */
  const memory = 'the TV in memory'

  /** The sets behind the clients of `createTv`: {open, post, close}. */
  const sets = new WeakMap()

  /** The address of a server without a trailing slash. */
  function baseOf(address) {
    let url
    try {
      url = new URL(address)
    } catch {
      throw new TypeError(`an address like http://127.0.0.1:8090 is wanted, not '${address}'`)
    }
    if (!/^https?:$/.test(url.protocol)) throw new TypeError(`an http address is wanted, not '${address}'`)
    return url.origin + url.pathname.replace(/\/+$/, '')
  }

  /** The address of a server's WebSocket. Browsers can't add headers to it, so session and token are in the query. */
  function socketUrl(base, {session, token} = {}) {
    const url = new URL(base.replace(/^http/, 'ws') + '/rpc')
    if (session !== undefined) url.searchParams.set('session', session)
    if (token !== undefined) url.searchParams.set('token', token)
    return url.href
  }

  /** Parameters of a command for JSON: missing ones become empty texts, or are left out at the end. */
  function parametersOf(values) {
    let count = values.length
    while (count > 0 && values[count - 1] === undefined) --count
    return Array.from(values.slice(0, count), value => value === undefined ? '' : value)
  }

  /** A message as JSON, with 64-bit numbers as texts. */
  const encode = message => JSON.stringify(message, (key, value) => typeof value === 'bigint' ? String(value) : value)

  /** The value of a reply as an app on a set sees it; undefined without a reply. */
  function valueOf({units, value}) {
    if (!units) return value
    let text = ''
    for (let at = 0; at < units.length; at += 4096) text += String.fromCharCode(...units.slice(at, at + 4096))
    return text
  }

  /** Converts the answer to `window.execute` to the result of `Execute`. */
  function executed(answer) {
    const value = valueOf(answer)
    return value === undefined && answer.accepted ? '' : value
  }

  /** The names of all commands, from an OpenRPC document. */
  function commandsOf(document) {
    return document.methods.map(method => method.name).filter(name => /^window\.[A-Z]/.test(name))
      .map(name => name.slice('window.'.length))
  }

  /** Connects a page to the server: with synchronous requests, and a WebSocket that keeps the session alive. */
  function pageTransport(base, token) {
    let leaving = false
    globalThis.addEventListener?.('pagehide', () => leaving = true)
    globalThis.addEventListener?.('pageshow', () => leaving = false)
    // A page does not learn whether the server was unreachable or the answer was lost.
    const unreachable = cause => new EmpConnectionError(
      leaving ? `${base} can't be called while the page unloads`
        : `${base} can't be reached: is emp-window serving there, and does it allow this page ` +
          `(--allow-origin ${globalThis.location?.origin})?${cause ? ` ${cause.message}` : ''}`, {cause, sent: !leaving})
    return {
      post(body, session) {
        if (leaving) throw unreachable()
        const request = new XMLHttpRequest()
        try {
          request.open('POST', `${base}/rpc`, false)
          request.setRequestHeader('Content-Type', 'application/json')
          if (session !== undefined) request.setRequestHeader('Emp-Session', session)
          if (token !== undefined) request.setRequestHeader('Authorization', `Bearer ${token}`)
          request.send(body)
        } catch (cause) {
          throw unreachable(cause)
        }
        if (request.status === 0) throw unreachable()
        return {status: request.status, text: request.responseText}
      },
      adopt(session) {
        this.release()
        this.socket = new WebSocket(socketUrl(base, {session, token}))
      },
      release() {
        this.socket?.close()
      },
    }
  }

  /** Connects to a set in memory by calling it. A connection without a listener keeps the session alive. */
  function memoryTransport(set) {
    return {
      post: (body, session) => ({status: 200, text: set.post(body, session)}),
      adopt(session) {
        this.release()
        this.connection = set.open(() => {}, session)
      },
      release() {
        this.connection?.close()
        this.connection = undefined
      },
    }
  }

  function setOf(tv) {
    const set = sets.get(tv)
    if (!set) throw new TypeError('a tv that createTv has made is wanted; for one that is connected to a server, the address')
    return set
  }

  /** A separate session on the virtual TV, used with synchronous requests. */
  class Link {
    #options
    #base
    #transport
    #session
    #hadSession = false
    #id = 0
    #commands

    constructor(options) {
      this.#options = options
      this.#base = options.tv ? memory : baseOf(options.address)
      this.#transport = options.tv ? memoryTransport(setOf(options.tv))
        : (options.transport ?? pageTransport)(this.#base, options.token)
    }

    /** Opens the session unless it is open. */
    open() {
      if (this.#session !== undefined) return
      const {appId, widgetId, name} = this.#options
      const {session} = this.#prepare('session.open', {appId, widgetId})
      this.#session = session
      this.#transport.adopt(session)
      if (this.#hadSession) {
        console.warn(`${name}: the session with the virtual TV was lost. A new one is open: the window that the app ` +
                     'selected and the channels that it found are gone.')
      }
      this.#hadSession = true
    }

    /**
     * Makes a call in the session. If the server refuses it because the session is gone, the call runs in a new
     * session. If the session ended while the reply was delayed, the call may have run and is not sent again.
     */
    call(method, params) {
      this.open()
      try {
        return this.#post(method, params, this.#session)
      } catch (error) {
        if (!(error instanceof EmpRpcError) || error.code !== 1003 || !/^there is no session /.test(error.data?.reason)) throw error
        this.#session = undefined
        this.open()
        return this.#post(method, params, this.#session)
      }
    }

    has(command) {
      this.#commands ??= new Set(commandsOf(this.#prepare('rpc.discover', {})))
      return this.#commands.has(command)
    }

    close() {
      const session = this.#session
      this.#session = undefined
      this.#hadSession = false
      if (session !== undefined) {
        try {
          this.#post('session.close', {}, session)
        } catch {
          // The session or the server is gone, so the session is closed in any case.
        }
      }
      this.#transport.release()
    }

    /** Makes a preparatory call. If it fails, the app's own call has not been sent. */
    #prepare(method, params) {
      try {
        return this.#post(method, params)
      } catch (error) {
        if (error instanceof EmpConnectionError) error.sent = false
        throw error
      }
    }

    #post(method, params, session) {
      const {status, text} = this.#transport.post(encode({jsonrpc: '2.0', id: ++this.#id, method, params}), session)
      const refused = (status >= 400 && status < 500) || status === 503  // refused before running
      const failed = (message, cause) =>
        new EmpConnectionError(`${this.#base}: ${message}`, {cause, status, sent: !refused})
      if (status !== 200) throw failed(`status ${status}: ${text.trim().slice(0, 500)}`)
      let answer
      try {
        answer = JSON.parse(text)
      } catch (cause) {
        throw failed('the answer is no JSON; is that emp-window?', cause)
      }
      if (answer?.error) throw new EmpRpcError(answer.error, method)
      if (answer?.result === undefined) throw failed('the answer is none of JSON-RPC; is that emp-window?')
      return answer.result
    }
  }

  /** The app's object. Functions of commands are created on access, since only the server knows the commands. */
  function objectOn(link, tv) {
    const functions = new Map()
    const Execute = (command, ...parameters) => executed(
      link.call('window.execute', {name: String(command), parameters: parametersOf(parameters.slice(0, 4))}))
    const commandOf = name => {
      if (typeof name !== 'string' || !/^[A-Z]/.test(name)) return undefined
      if (!functions.has(name) && link.has(name)) functions.set(name, (...parameters) => Execute(name, ...parameters))
      return functions.get(name)
    }
    const own = {
      Execute,
      isVirtual: true,
      keyCodes: {...keyCodes},
      run: line => link.call('tv.run', {line}).lines,
      close: () => link.close(),
      ...tv && {tv},
    }
    return new Proxy(own, {
      get: (target, name) => name in target ? target[name] : commandOf(name),
      has: (target, name) => name in target || commandOf(name) !== undefined,
    })
  }

  /** `keyCode` of keys by their standard names, with the numbers that many sets use. */
  const keyCodes = {
    ArrowLeft: 37, ArrowUp: 38, ArrowRight: 39, ArrowDown: 40, Enter: 13, Escape: 27, Exit: 27, GoBack: 461, BrowserBack: 461,
    ColorF0Red: 403, ColorF1Green: 404, ColorF2Yellow: 405, ColorF3Blue: 406, ChannelUp: 427, ChannelDown: 428,
    MediaPlay: 415, MediaPause: 19, MediaStop: 413, MediaRecord: 416, MediaRewind: 412, MediaFastForward: 417,
    AudioVolumeUp: 447, AudioVolumeDown: 448, AudioVolumeMute: 449,
    Info: 457, Guide: 458, Teletext: 459, Subtitle: 460, ContextMenu: 462,
  }

  /** Sends a key of the remote control to the app: to the element with the focus, else to the body, as in a browser. */
  function press(kind, key, codes) {
    const event = new KeyboardEvent(kind, {key, bubbles: true, cancelable: true, composed: true})
    const code = Object.hasOwn(codes, key) ? codes[key] : /^[0-9]$/.test(key) ? key.charCodeAt(0) : 0
    for (const name of ['keyCode', 'which']) Object.defineProperty(event, name, {value: code})
    ;(document.activeElement ?? document.body ?? document).dispatchEvent(event)
  }

  /** Elements with their own use of the keyboard: fields, and elements that Enter activates. */
  const fields = 'input, textarea, select, [contenteditable]'
  const pressable = 'button, a, summary'

  /** True if a key of the keyboard is meant for the element that has the focus. */
  function isForElement(event) {
    const [target] = event.composedPath()
    if (event.isComposing || !(target instanceof Element)) return event.isComposing
    return Boolean(target.closest(event.key === 'Enter' ? `${fields}, ${pressable}` : fields))
  }

  /** Keyboard keys that operate the remote control, in lower case; the page sends them. */
  let remoteKeys = new Set()

  /**
   * Passes keyboard keys that operate the remote control to the page. The page sends them where the remote control's
   * keys go: either back to the app, as keys of a remote control, or to the TV. So they have the same effect wherever
   * the focus is.
   */
  function passKeys(parent, origin) {
    const passed = new Set()
    const take = event => {
      event.preventDefault()
      event.stopImmediatePropagation()
    }
    globalThis.addEventListener('keydown', event => {
      const {key, ctrlKey, altKey, metaKey, isTrusted} = event
      if (!isTrusted || ctrlKey || altKey || metaKey || !remoteKeys.has(key.toLowerCase()) || isForElement(event)) return
      take(event)
      passed.add(event.code)
      parent.postMessage({type: 'emp-window/typed', key}, origin)
    }, true)
    globalThis.addEventListener('keyup', event => event.isTrusted && passed.delete(event.code) && take(event), true)
  }

  const heard = new Set()

  /**
   * In a frame of the virtual TV's page: reports to the page that the app is there, and receives keys of its remote
   * control. Ignores messages from other windows and origins. With a TV in memory, the page must have the app's origin.
   */
  function listenToRemote(object, {address, tv}, name) {
    const {parent, document, location} = globalThis
    if (!document || !parent || parent === globalThis) return
    const origin = tv ? globalThis.origin : new URL(address).origin
    if (origin === 'null') return  // a file has no origin
    if (location.ancestorOrigins && location.ancestorOrigins[0] !== origin) return
    parent.postMessage({type: 'emp-window/app', name}, origin)
    if (heard.has(origin)) return
    heard.add(origin)
    passKeys(parent, origin)
    globalThis.addEventListener('message', ({source, origin: from, data}) => {
      if (source !== parent || from !== origin) return
      if (data?.type === 'emp-window/keyboard' && Array.isArray(data.keys)) remoteKeys = new Set(data.keys)
      if (data?.type !== 'emp-window/key') return
      const {kind, key} = data
      if ((kind === 'keydown' || kind === 'keyup') && typeof key === 'string') press(kind, key, object.keyCodes ?? {})
    })
  }

  const installed = new WeakSet()

  /**
   * Puts the object under a name into `target`, usually `globalThis`, and returns it. If the name already has such an
   * object, as after hot reload, returns that one, unless its TV was closed. If the server can't be reached yet, prints
   * a warning on the console; the next call of the object tries again.
   */
  function install(target, options) {
    const {name} = options
    if (typeof name !== 'string' || name === '') throw new TypeError('a name is wanted, under which the app has the object')
    const before = target[name]
    if (before !== undefined) {
      const isOurs = before !== null && installed.has(before)
      if (isOurs && !sets.get(before.tv)?.isClosed) return before
      if (!isOurs) throw new TypeError(`'${name}' is taken by something else: give the object another name`)
    }
    const link = new Link(options)
    const object = objectOn(link, options.tv)
    installed.add(object)
    Object.defineProperty(target, name, {value: object, configurable: true, enumerable: true, writable: true})
    try {
      link.open()
    } catch (error) {
      console.warn(`${name}: ${error.message}`)
    }
    listenToRemote(object, options, name)
    return object
  }

  function ownToken(origin) {
    try {
      return globalThis.location?.origin === origin ? globalThis.sessionStorage?.getItem('emp-window.token') ?? undefined : undefined
    } catch {
      return undefined  // the browser forbids storage
    }
  }

  const shared = globalThis[Symbol.for('emp-window/2')] ??= Object.freeze({
    EmpConnectionError, EmpRpcError, EmpTvError, memory, sets, setOf, baseOf, socketUrl, parametersOf, encode, valueOf, executed,
    commandsOf, install,
  })

  const source = globalThis.document?.currentScript?.src
  const url = source ? new URL(source) : undefined
  if (url?.pathname.endsWith('/window.js')) {
    const given = Object.fromEntries(url.searchParams)
    // Apps included in the page have its origin, and find the token where the page stores it for this tab.
    const {name, appId, widgetId, token = ownToken(url.origin)} = given
    if (!name) throw new TypeError(`${url.origin}${url.pathname}: the name is missing, as in window.js?name=tvWindow`)
    // On a site without a server, an earlier script defines how apps reach the set.
    const transport = globalThis[Symbol.for('emp-window/transport')]
    shared.install(globalThis, {address: new URL('.', url).href, name, appId, widgetId, token, transport})
  }
})()
