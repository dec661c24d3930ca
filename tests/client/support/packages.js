// SPDX-License-Identifier: MIT
// Packages from the registry that the tests use; they are installed in the build directory, not beside the tests.
import {readFileSync} from 'node:fs'
import {createRequire} from 'node:module'
import {join} from 'node:path'

const directory = process.env.EMP_WINDOW_CLIENT_PACKAGES
if (!directory) throw new Error('EMP_WINDOW_CLIENT_PACKAGES is to name the folder in which packages.sh has installed packages')

const require = createRequire(join(directory, 'package.json'))
export const ws = require('ws')
export const typescript = join(directory, 'node_modules', 'typescript', 'bin', 'tsc')
/** Loaded only on demand, since it is large. */
export const playwright = () => require('playwright-core')
/** The source of axe-core, to run in a page. */
export const axe = readFileSync(join(directory, 'node_modules', 'axe-core', 'axe.min.js'), 'utf8')
