/* Starts the page: connects to the server that it came from, and feeds the store. */
import {connect} from '../client.js'
import {useTv} from './act.js'
import {feed} from './feed.js'
import {rememberedToken, rememberToken} from './memory.js'
import {store} from './store.js'
import './app.js'
import './channels.js'
import './command.js'
import './drop.js'
import './faults.js'
import './foot.js'
import './head.js'
import './inputs.js'
import './planes.js'
import './remote.js'
import './screen.js'
import './set.js'
import './timeline.js'
import './tracks.js'
import './workbench.js'  // last: it draws all others

const firstPause = 200  // ms before the first try to connect again; doubles with each that fails
const longestPause = 2000
const patience = 0  // what is done without a connection fails at once: nobody wants it to happen seconds later

/** The token that the address brings behind `#token=`. It is kept for this tab, and taken out of the address. */
function token() {
  const given = /^#token=(.+)$/.exec(location.hash)?.[1]
  if (given) {
    rememberToken(decoded(given))
    history.replaceState(null, '', location.pathname + location.search)
  }
  return rememberedToken()
}

/** A part of an address without its escapes; as it stands where a per cent sign starts none. @param {string} text */
function decoded(text) {
  try {
    return decodeURIComponent(text)
  } catch {
    return text
  }
}

/** What a person can do where the server lets nobody in; a browser does not tell why a WebSocket fails. @param {string} address */
async function adviceFor(address) {
  try {
    const {status} = await fetch(`${address}openrpc.json`, {headers: {Authorization: `Bearer ${token() ?? ''}`}})
    return status === 401 ? 'This server wants a token: add #token=TOKEN to the address of this page' : undefined
  } catch {
    return undefined
  }
}

async function start() {
  const address = new URL('.', location.href).href
  for (let pause = firstPause; ; pause = Math.min(2 * pause, longestPause)) {
    try {
      const tv = await connect(address, {token: token(), patience, firstPause, longestPause, appId: 'page'})
      useTv(tv)
      feed(tv)
      return
    } catch (error) {
      const {message} = /** @type {Error} */ (error)
      store.set('connection', {connected: false, reason: message, advice: await adviceFor(address), since: Date.now()})
      await new Promise(resolve => setTimeout(resolve, pause))
    }
  }
}

addEventListener('hashchange', () => location.reload())
start()
