// SPDX-License-Identifier: MIT

// Carries the precompiled headers of the tests.
