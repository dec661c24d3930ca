// SPDX-License-Identifier: MIT
// Checks that the site's replacement modules export everything that the page uses of the originals.
import * as pageAccess from '../../page/app-access.js'
import * as pageConnection from '../../page/connection.js'
import * as access from '../page/app-access.js'
import * as connection from '../page/connection.js'

export const instead: [typeof pageAccess, typeof pageConnection] = [access, connection]
