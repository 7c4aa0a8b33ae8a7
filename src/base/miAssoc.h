// A process-wide store of blocks by a key of three parts: for the native lists of a window, which keep there what is
// selected in a field while its control is away.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "KRTypes.h"

/** Keeps a copy of `bytes`, in place of what the key had. False when there is no memory, and then all stands. */
bool AssociateNew(KRWord owner, std::uint16_t first, std::uint16_t second, const void *bytes, std::uint32_t size);
/** True when the key was there. */
bool AssociateDelete(KRWord owner, std::uint16_t first, std::uint16_t second);
/** The stored bytes, good until the key is changed; null when it is not there. */
void *AssociateFind(KRWord owner, std::uint16_t first, std::uint16_t second);
/** Frees all entries. */
void AssociateClear();
