// SPDX-License-Identifier: MIT
// The site's modules that stand in place of the page's have all that the page uses of those.
import * as pageAccess from '../../page/app-access.js'
import * as pageConnection from '../../page/connection.js'
import * as access from '../page/app-access.js'
import * as connection from '../page/connection.js'

export const instead: [typeof pageAccess, typeof pageConnection] = [access, connection]
