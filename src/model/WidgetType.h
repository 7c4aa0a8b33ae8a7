// Which type of widget an annotation is.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"

/**
 * The widget type: "Text", "ComboBox", "ListBox", "Button", "CheckBox", "RadioButton", or the field type as it stands
 * ("Sig"); KRAtomNull when there is none.
 */
KRAtom TSDMWidgetGetSubType(DMAnnot annot);
