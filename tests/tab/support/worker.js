// SPDX-License-Identifier: MIT
// A worker that creates a TV from the options in its first message, and serves the port in that message.
import {createTv} from '/package/client.js'
import {servePort} from '/package/port.js'

onmessage = async ({data, ports: [port]}) => servePort(await createTv(data), port)
