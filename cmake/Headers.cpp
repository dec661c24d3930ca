// SPDX-License-Identifier: MIT
// Stands for precompiled headers, which want a source.
