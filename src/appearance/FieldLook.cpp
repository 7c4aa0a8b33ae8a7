// The text look of a field.
//
// A field's look comes from its `DA`, whose font is a name in the `DR`. Real files name fonts there that no resources
// define; such a name is bound on the field itself, to a base font or to a Helvetica that bears the name, so that the
// name stays and something is drawn.
// SPDX-License-Identifier: MIT
#include "appearance/FieldLook.h"

#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "CoreHFT.h"
#include "KRErrors.h"
#include "PIFrame.h"
#include "base/BufCont.h"
#include "base/FormStr.h"
#include "base/miKanjiFont.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/NameHash.h"
#include "objects/FontMgr.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"
#include "objects/TextLook.h"

namespace {

struct OwnedBuffer : BufControl {
    explicit OwnedBuffer(std::uint16_t size) : BufControl{} {
        if (BufControlAlloc(this, size) != 0) KRRaise(KRErrNoMemory);
    }
    ~OwnedBuffer() {
        BufControlFree(this);
    }
    OwnedBuffer(const OwnedBuffer &) = delete;
    OwnedBuffer &operator=(const OwnedBuffer &) = delete;
};

void PutOwnEntry(DMField *field, TSEntry entry, LexObj value) {
    LexDictPut(TSDMFieldGetLexObj(field), Entry_to_Name(entry), value);
    field->entries |= entry;
}

/** True when the field had the entry itself. */
bool RemoveOwnEntry(DMField *field, TSEntry entry) {
    if (!(field->entries & entry)) return false;
    LexDictRemove(TSDMFieldGetLexObj(field), Entry_to_Name(entry));
    field->entries &= ~static_cast<std::uint32_t>(entry);
    return true;
}

LexObj NewOwnDict(DMField *field) {
    return LexNewDict(TSDMFieldGetLexDoc(field), /*indirect*/ false, /*sizeHint*/ 5);
}

/** False, with the look undefined, for a string that gives no font and size to draw with. */
bool ReadString(LexObj string, TextAppearance *look) {
    if (!IsString(string)) return false;
    const KRErrorCode code = Protect([&] { TSLexStringGetTextAppearance(string, look); });
    if (code != KRErrNone && code != KRErrBadField) KRRaise(code);
    return code == KRErrNone && look->fontResource != KRAtomNull && TextAppearanceIsWellFormed(look);
}

/** Helvetica for a form whose own default cannot be read: the form keeps what it has. */
void UseHelvetica(DMField *field, TextAppearance *look) {
    *look = TextAppearanceDefault();
    look->fontResource = MapBaseFontToNameFont(look->baseFont);
    TSLexDictLoad<LexName>(TSDMDocGetFontDict(TSDMFieldGetDoc(field), look->baseFont), Name_K, &look->fontResource);
}

/** The look of the field's string, else of the form's. A form without any gets the default look. */
void ReadLook(DMField *field, TextAppearance *look) {
    if (ReadString(TSDMFieldGetEntry(field, TSEntryDA), look)) return;
    const LexObj form = TSDMFieldGetTessella(field);
    const LexObj formString = TessellaGetEntry(form, TSEntryDA);
    if (ReadString(formString, look)) return;
    if (IsNull(formString)) {
        *look = TextAppearanceDefault();
        TessellaSetDefaultTextAppearance(form, look);
    } else {
        UseHelvetica(field, look);
    }
}

/** `Font` of the field's resources; the null object when no resources or no fonts are there yet. */
LexObj KnownFonts(DMField *field) {
    const LexObj resources = TSDMFieldGetEntry(field, TSEntryDR);
    if (IsNull(resources)) return LexNullObj;
    if (!IsDict(resources)) KRRaise(KRErrBadResource);
    const LexObj fonts = LexDictGet(resources, Font_K);
    if (!IsNull(fonts) && !IsDict(fonts)) KRRaise(KRErrBadResource);
    return fonts;
}

bool IsOtherObject(LexObj obj, void *font) {
    return !LexObjEqual(obj, *static_cast<const LexObj *>(font));
}

bool IsHelveticaNamed(LexObj font, KRAtom name) {
    KRAtom actual = KRAtomNull;
    return FontDictGetBaseFontName(font) == Helvetica_K && TSLexDictLoad<LexName>(font, Name_K, &actual) == 0 &&
           actual == name;
}

LexObj NewHelveticaNamed(DMDoc doc, KRAtom name) {
    const LexDoc lexDoc = DMDocGetLexDoc(doc);
    LexObj helvetica = TSDMDocGetFontDict(doc, Helvetica_K);
    const LexObj copy = TSLexObjCopyWithPredicate(lexDoc, helvetica, &IsOtherObject, &helvetica);
    if (!IsDict(copy)) KRRaise(KRErrBadResource);
    LexDictPut(copy, Name_K, LexNewName(lexDoc, /*indirect*/ false, name));
    return copy;
}

/** Helvetica under another resource name, shared by the document's fields until somebody changes it. */
LexObj HelveticaNamed(DMDoc doc, KRAtom name) {
    DocHashControl *control = TSDMDocFindHashHead(doc);
    if (!control) return NewHelveticaNamed(doc, name);
    LexObj &font = control->namedHelveticas.try_emplace(name, LexNullObj).first->second;
    if (!IsHelveticaNamed(font, name)) font = NewHelveticaNamed(doc, name);
    return font;
}

/** Gives the field a font for a resource name that its resources do not define. */
void BindMissingFont(DMField *field, TextAppearance *look) {
    if (IsNull(TSDMFieldGetTessella(field))) KRRaise(KRErrBadResource);
    const DMDoc doc = TSDMFieldGetDoc(field);
    LexObj font;
    look->baseFont = MapNameFontToBaseFont(look->fontResource);
    if (look->baseFont != KRAtomNull) {
        font = TSDMDocGetFontDict(doc, look->baseFont);
    } else {
        look->baseFont = Helvetica_K;
        font = HelveticaNamed(doc, look->fontResource);
    }
    // Resources of its own first, so that the font does not go into those that others inherit too.
    if (!(field->entries & TSEntryDR)) PutOwnEntry(field, TSEntryDR, NewOwnDict(field));
    TSDMFieldSetDefaultBaseFont(field, font);
}

void WriteOwnLook(DMField *field, TextAppearance *look) {
    OwnedBuffer text(250);
    if (TextAppearanceSTRM(look, &text) != 0) KRRaise(KRErrBadParam);
    std::int32_t length = text.length;
    while (length > 0 && miIsspace(static_cast<unsigned char>(text.data[length - 1]))) --length;
    PutOwnEntry(field, TSEntryDA, LexNewString(TSDMFieldGetLexDoc(field), /*indirect*/ false, text.data, length));
}

void RemoveOwnLook(DMField *field) {
    bool removed = RemoveOwnEntry(field, TSEntryDA);
    removed |= RemoveOwnEntry(field, TSEntryDR);
    removed |= RemoveOwnEntry(field, TSEntryQ);
    if (removed) propagateAppChange(field->firstChild);
}

void BindFontOfLook(DMField *field, TextAppearance *look, const TextAppearance &present) {
    look->fontResource = TSDMFieldSetDefaultBaseFont(field, TSDMDocGetFontDict(TSDMFieldGetDoc(field), look->baseFont));
    if (look->fontResource != KRAtomNull) return;
    look->baseFont = present.baseFont;
    look->fontResource = present.fontResource;
}

/** Brings the field from `present` to `look`: true when something changed. */
bool ChangeLook(DMField *field, TextAppearance *look, TextAppearance present) {
    bool changed = false;
    if (present.quadding != look->quadding) {
        present.quadding = look->quadding;
        TSDMFieldSetDefaultQuadding(field, look->quadding);
        changed = true;
    }
    if (TextAppearanceEqual(&present, look)) return changed;
    if (present.baseFont != look->baseFont) BindFontOfLook(field, look, present);
    if (RemoveOwnEntry(field, TSEntryDA)) {
        TSDMFieldGetDefaultTextAppearance(field, &present);
        if (TextAppearanceEqual(&present, look)) return true;
    }
    WriteOwnLook(field, look);
    return true;
}

/** Base font of a field's string, without making what is missing; KRAtomNull when it cannot be told. */
KRAtom BaseFontOfString(DMField *field) {
    const LexObj string = TSDMFieldGetEntry(field, TSEntryDA);
    if (!IsString(string)) return KRAtomNull;
    TextAppearance look;
    if (Protect([&] { TSLexStringGetTextAppearance(string, &look); })) return KRAtomNull;
    if (look.fontResource == KRAtomNull) return KRAtomNull;
    const LexObj fonts = TSLexDictGetOfType(TSDMFieldGetEntry(field, TSEntryDR), Font_K, LexDict);
    const KRAtom known = FontDictGetBaseFontName(TSLexDictGetOfType(fonts, look.fontResource, LexDict));
    return known != KRAtomNull ? known : MapNameFontToBaseFont(look.fontResource);
}

} // namespace

void TSDMFieldGetDefaultTextAppearance(DMField *field, TextAppearance *look) {
    ReadLook(field, look);
    if (look->fontResource == KRAtomNull) KRRaise(KRErrBadResource);
    const LexObj font = TSLexDictGetOfType(KnownFonts(field), look->fontResource, LexDict);
    if (IsDict(font))
        look->baseFont = FontDictGetBaseFontName(font);
    else
        BindMissingFont(field, look);
    const LexObj quadding = TSDMFieldGetEntry(field, TSEntryQ);
    const std::int32_t place = IsInteger(quadding) ? LexIntegerValue(quadding) : 0;
    // A text that stands nowhere would not be drawn.
    if (place > 0 && place <= 2) look->quadding = static_cast<std::uint16_t>(place);
}

void TSDMFieldSetDefaultTextAppearance(DMField *field, TextAppearance *look) {
    if (!TSDMFieldIsValid(field)) return;
    if (!look) {
        RemoveOwnLook(field);
        return;
    }
    if (!TessellaIsValid(TSDMFieldGetTessella(field)) || !TextAppearanceIsWellFormed(look)) KRRaise(KRErrBadParam);
    TextAppearanceHomogenizeColors(look);
    TextAppearance present;
    TSDMFieldGetDefaultTextAppearance(field, &present);
    if (!ChangeLook(field, look, present)) return;
    propagateAppChange(field->firstChild);
    TSDMFieldAppearanceWasUpdated(field);
}

KRAtom TSDMFieldSetDefaultBaseFont(DMField *field, LexObj fontDict) {
    const KRAtom baseFont = FontDictGetBaseFontName(fontDict);
    if (!TSDMFieldIsValid(field) || baseFont == KRAtomNull) return KRAtomNull;
    KRAtom name = MapBaseFontToNameFont(baseFont);
    TSLexDictLoad<LexName>(fontDict, Name_K, &name);
    if (!IsDict(TSDMFieldGetEntry(field, TSEntryDR))) PutOwnEntry(field, TSEntryDR, NewOwnDict(field));
    const LexObj resources = TSDMFieldGetEntry(field, TSEntryDR);
    if (!IsDict(resources)) KRRaise(KRErrBadResource);
    if (!IsDict(LexDictGet(resources, Font_K))) LexDictPut(resources, Font_K, NewOwnDict(field));
    const LexObj fonts = LexDictGet(resources, Font_K);
    if (!IsDict(fonts)) KRRaise(KRErrBadResource);
    if (!LexDictKnown(fonts, name)) LexDictPut(fonts, name, fontDict);
    return name;
}

void TSDMFieldSetDefaultQuadding(DMField *field, std::uint16_t quadding) {
    const LexObj present = TSDMFieldGetEntry(field, TSEntryQ);
    if (IsInteger(present) && LexIntegerValue(present) == quadding) return;
    PutOwnEntry(field, TSEntryQ, LexNewInteger(TSDMFieldGetLexDoc(field), /*indirect*/ false, quadding));
}

void propagateAppChange(DMField *child) {
    while (child) {
        DMField *const next = child->nextSibling;
        if (!TSDMFieldCanDisplay(child)) {
            propagateAppChange(child->firstChild);
        } else {
            const LexObj value = TSDMFieldGetEntry(child, TSEntryV);
            TSDMFieldAppearanceWasUpdated(child);
            if (IsNull(value))
                TSDMFieldReset(child);
            else
                TSDMFieldProduceDisplayFromValue(child, value);
        }
        child = next;
    }
}

bool TSDMFieldIsKanji(DMField *field) {
    if (!TSDMFieldIsValid(field)) return false;
    DMField *other = TSLexDocGetDMFieldFromNameStr(TSDMFieldGetLexDoc(field), field->name);
    for (; other; other = other->nextSameName) {
        if (IsKanji(BaseFontOfString(other))) return true;
    }
    return IsKanji(BaseFontOfString(field));
}
