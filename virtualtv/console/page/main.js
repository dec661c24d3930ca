// SPDX-License-Identifier: MIT
/* Starts the page: connects to the set, and starts the feed of the store. */
import {useTv} from './act.js'
import {open} from './connection.js'
import {feed} from './feed.js'
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
import './workbench.js'  // last, since it draws all others

async function start() {
  const tv = await open(connection => store.set('connection', connection))
  useTv(tv)
  feed(tv)
}

addEventListener('hashchange', () => location.reload())
start()
