// SPDX-License-Identifier: MIT
// A dummy source, which precompiled headers require.
