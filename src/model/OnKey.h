// The on-state of check boxes and radio buttons: the key of the normal appearance that is not Off.
// SPDX-License-Identifier: MIT
#pragma once

#include "KRTypes.h"

/** The key kept in `$On` while the appearance is rebuilt, else the appearance's, else the catalogue's default. */
KRAtom WButtonGetOnKey(DMAnnot annot);
/** The first key but Off of the normal appearance's states; KRAtomNull when there is none. */
KRAtom WButtonGetOnKeyEx(DMAnnot annot);
/** The picture of the on-state is one that a page can show: it has a box, and its content draws something. */
bool WButtonHasUsableFaces(DMAnnot annot);
/** Keeps `key` in `$On`. Nothing for KRAtomNull. */
void WButtonSetOnKey(DMAnnot annot, KRAtom key);
/** Removes `$On`. */
void WButtonCleanUpKeys(DMAnnot annot);
KRAtom WButtonGetOffKey();
