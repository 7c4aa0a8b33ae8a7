// What takes fields and widgets out of a form: the clean-up before a save, and the end of the whole form.
// SPDX-License-Identifier: MIT
#pragma once

#include "KRTypes.h"

/**
 * Before a save: fields whose widget is on no page any more are undefined and hidden leftovers removed (when `$Wa` is
 * there), volatile values cleared, private keys and a stray `MaxLen` removed.
 */
void TessellaOptimize(LexObj form);

/** Tells TSFormWillDestroy, takes all widgets' fields and their widgets away, then the form. `flag` has no effect. */
void TSDMDocDestroyForm(DMDoc doc, bool flag);
