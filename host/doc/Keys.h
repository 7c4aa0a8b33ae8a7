// The PDF keys and names that the document model reads and writes, interned once.
// SPDX-License-Identifier: MIT
#pragma once

#include "kernel/Atoms.h"

namespace jackdaw {

struct KeyAtoms {
    KRAtom Annot = AtomFromText("Annot");
    KRAtom Annots = AtomFromText("Annots");
    KRAtom B = AtomFromText("B");
    KRAtom Catalog = AtomFromText("Catalog");
    KRAtom Contents = AtomFromText("Contents");
    KRAtom Count = AtomFromText("Count");
    KRAtom CropBox = AtomFromText("CropBox");
    KRAtom DOS = AtomFromText("DOS");
    KRAtom F = AtomFromText("F");
    KRAtom FS = AtomFromText("FS");
    KRAtom FT = AtomFromText("FT");
    KRAtom Font = AtomFromText("Font");
    KRAtom Info = AtomFromText("Info");
    KRAtom Kids = AtomFromText("Kids");
    KRAtom Length = AtomFromText("Length");
    KRAtom Limits = AtomFromText("Limits");
    KRAtom Mac = AtomFromText("Mac");
    KRAtom MediaBox = AtomFromText("MediaBox");
    KRAtom Names = AtomFromText("Names");
    KRAtom P = AtomFromText("P");
    KRAtom Page = AtomFromText("Page");
    KRAtom Pages = AtomFromText("Pages");
    KRAtom Parent = AtomFromText("Parent");
    KRAtom Rect = AtomFromText("Rect");
    KRAtom Resources = AtomFromText("Resources");
    KRAtom Rotate = AtomFromText("Rotate");
    KRAtom S = AtomFromText("S");
    KRAtom StructParent = AtomFromText("StructParent");
    KRAtom StructParents = AtomFromText("StructParents");
    KRAtom Subtype = AtomFromText("Subtype");
    KRAtom T = AtomFromText("T");
    KRAtom Type = AtomFromText("Type");
    KRAtom UF = AtomFromText("UF");
    KRAtom Unix = AtomFromText("Unix");
    KRAtom Widget = AtomFromText("Widget");
};

inline const KeyAtoms &Keys() {
    static const KeyAtoms s_keys;
    return s_keys;
}

} // namespace jackdaw
