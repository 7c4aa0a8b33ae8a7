// The text look of a field: where it comes from, how it is changed, how a change goes down the field tree.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "LexHFT.h"

/**
 * The effective look (`DA` and `Q`, inherited). Where the field's `DA` cannot be read, the form's holds, and then
 * Helvetica of automatic size; a missing one is made in the form. A font resource that no resources define is bound in
 * a `DR` of the field itself, and resources that are absent are made. Raises KRErrBadResource for a `DR` or its `Font`
 * that is no dictionary, and without a valid form.
 */
void TSDMFieldGetDefaultTextAppearance(DMField *field, TextAppearance *look);

/**
 * Changes the look, for the field and all that inherits from it; null removes the field's own `DA`, `DR` and `Q`. A
 * look that equals the inherited one is not stored. `look` comes back with its colours homogenised and its resource
 * name filled in. Nothing for an invalid field. Raises KRErrBadParam for a look that is not well-formed or a document
 * without a form.
 */
void TSDMFieldSetDefaultTextAppearance(DMField *field, TextAppearance *look);

/** Binds a font in the field's `DR`; its resource name, or KRAtomNull for an invalid field or no font. */
KRAtom TSDMFieldSetDefaultBaseFont(DMField *field, LexObj fontDict);
/** Writes `Q` unless the field has this value already. */
void TSDMFieldSetDefaultQuadding(DMField *field, std::uint16_t quadding);

/** Displays the fields of a sibling chain, and those below its inner nodes, anew. Null allowed. */
void propagateAppChange(DMField *child);

/** The field, or one of the fields of its name, has a default appearance with a Japanese font. */
bool TSDMFieldIsKanji(DMField *field);
