// SPDX-License-Identifier: MIT
// A worker that makes a TV from the options in its first message, and serves the port that comes along.
import {createTv} from '/package/client.js'
import {servePort} from '/package/port.js'

onmessage = async ({data, ports: [port]}) => servePort(await createTv(data), port)
