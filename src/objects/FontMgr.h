// The fonts of a form: the fourteen base fonts and two Japanese ones, their short resource names, and the dictionaries
// that the form's default resources hold for them.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "LexHFT.h"

/** Fills the table of fonts; once, when the atoms exist. */
void FontMgrInit();

/** `Helv` for `Helvetica`; an atom that is none of these fonts comes back unchanged. */
KRAtom MapBaseFontToNameFont(KRAtom baseFont);
/** `Helvetica` for `Helv`; KRAtomNull for any other name. */
KRAtom MapNameFontToBaseFont(KRAtom resourceName);
/** One of the table's fonts. */
bool CanGenerateFont(KRAtom baseFont);
/** `BaseFont`; KRAtomNull when the object is no dictionary or has no such name. */
KRAtom FontDictGetBaseFontName(LexObj fontDict);
/** The CID font under one of the two Japanese fonts; KRAtomNull for others. */
KRAtom DescendantFontOf(KRAtom baseFont);

/**
 * The font's dictionary in the form's `DR`, made (indirect, with form and `DR` where they are missing) when it is not
 * there: under its usual name, or that with a number where the name is another font's. Nothing that stands in `DR`
 * changes. The null object for a font outside the table.
 */
LexObj TSDMDocGetFontDict(DMDoc doc, KRAtom baseFont);
LexObj TSLexDocGetFontDict(LexDoc doc, KRAtom baseFont);
/**
 * The same for text of ours to be drawn with: a whole font whose Latin text is in PDFDocEncoding. One of another
 * encoding, or of which only some glyphs are embedded, would show other letters, and stays for those who named it.
 */
LexObj TSLexDocGetTextFont(LexDoc doc, KRAtom baseFont);

/** The encoding dictionary that all Latin fonts of a form share, made when it is not there; null on failure. */
LexObj TSLexDocGetPDFDocEncoding(LexDoc doc);

/** The `DescendantFonts` array of one of the two Japanese fonts: direct, one dictionary. */
LexObj GetDescendantFontArray(LexDoc doc, KRAtom baseFont);
