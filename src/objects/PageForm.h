// A form XObject made of a whole page, for icons.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "LexHFT.h"

/**
 * The page's contents and resources as a form in `target`, its box's centre at the origin and upright as the page is
 * shown. The null object when it cannot be made; raises nothing.
 */
LexObj TSDMFormFromPage(DMDoc target, DMPage page);
/** The same of a page dictionary that need not stand in a page tree. */
LexObj TSDMFormFromCoPage(DMDoc target, LexObj pageObject);

/** What both do. With a `page` the box is its crop box within its media box; with null, what `pageObject` inherits. */
LexObj TSFormXObjFromPageContents(DMDoc target, DMPage page, LexObj pageObject);
