// The form dictionary: validity, access, creation, default look; and the notification servers.
// SPDX-License-Identifier: MIT
#include "objects/Tessella.h"

#include <algorithm>
#include <new>

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/BufCont.h"
#include "base/FormStr.h"
#include "objects/FontMgr.h"
#include "objects/LexUtil.h"
#include "objects/TextLook.h"

NotificationServer **TessellaNotificationServer = nullptr;

namespace {

/** Forms of a version below this, just over 0.8, had another structure. */
constexpr KRFixed OldestVersion = 0xCCCB;

/**
 * The form that passed the test last. The test runs at every access to an inherited entry. A remembered object of a
 * closed document does no harm: it is no dictionary any more.
 */
LexObj s_lastValidForm = LexNullObj;

/** Tells TSFormEntryDidChange which entries of the form changed. */
void TessellaEntryUpdated(LexObj form, std::uint32_t entries) {
    TSFieldNotifyRec record{};
    record.doc = DMDocFromLexDoc(LexObjGetDoc(form));
    record.entries = entries;
    TessellaBroadcast(TSFormEntryDidChange, &record);
}

std::int32_t QuaddingOf(LexObj form) {
    std::int32_t quadding = 0;
    TSLexDictLoad<LexInteger>(form, quadding_K, &quadding);
    return quadding;
}

/** `Q`, which is not written for the value that it has by default. Gives its mask when it was. */
std::uint32_t SetQuadding(LexObj form, std::int32_t quadding) {
    if (QuaddingOf(form) == quadding) return 0;
    LexDictPut(form, quadding_K, LexNewInteger(LexObjGetDoc(form), /*indirect*/ false, quadding));
    return TSEntryQ;
}

LexObj FormFonts(LexObj form) {
    return TSLexDictGetOfType(TSLexDictGetOfType(form, defRes_K, LexDict), Font_K, LexDict);
}

/** The dictionary `Font` of `DR`, both made when missing; the font of check marks is put into a new one. */
LexObj EnsureFormFonts(LexObj form) {
    if (IsDict(FormFonts(form))) return FormFonts(form);
    const LexDoc doc = LexObjGetDoc(form);
    LexObj resources = LexDictGet(form, defRes_K);
    if (!IsDict(resources)) {
        resources = LexNewDict(doc, /*indirect*/ false, /*sizeHint*/ 5);
        LexDictPut(form, defRes_K, resources);
    }
    const LexObj fonts = LexNewDict(doc, /*indirect*/ false, /*sizeHint*/ 5);
    LexDictPut(resources, Font_K, fonts);
    const LexObj dingbats = TSLexDocGetFontDict(doc, ZapfDingbats_K);
    KRAtom name = KRAtomNull;
    if (TSLexDictLoad<LexName>(dingbats, Name_K, &name) == 0) LexDictPut(fonts, name, dingbats);
    return fonts;
}

/** Puts a font among the form's resources. Gives the mask of `DR` when it was not there. */
std::uint32_t TessellaSetDefaultBaseFont(LexObj form, LexObj fontDict) {
    const KRAtom baseFont = FontDictGetBaseFontName(fontDict);
    if (!TessellaIsValid(form) || baseFont == KRAtomNull) return 0;
    KRAtom name = MapBaseFontToNameFont(baseFont);
    TSLexDictLoad<LexName>(fontDict, Name_K, &name);
    const LexObj fonts = EnsureFormFonts(form);
    if (!IsDict(fonts)) KRRaise(KRErrBadResource);
    if (LexObjEqual(LexDictGet(fonts, name), fontDict)) return 0;
    LexDictPut(fonts, name, fontDict);
    return TSEntryDR;
}

void WriteDefaultLook(LexObj form, TextAppearance *look) {
    constexpr std::uint16_t firstSize = 120;
    BufControl buffer{};
    if (BufControlAlloc(&buffer, firstSize) != 0) KRRaise(KRErrNoMemory);
    const KRErrorCode code = Protect([&] {
        if (TextAppearanceSTRM(look, &buffer) != 0) KRRaise(KRErrBadParam);
        LexDictPut(form, textApp_K, LexNewString(LexObjGetDoc(form), /*indirect*/ false, buffer.data, buffer.length));
    });
    BufControlFree(&buffer);
    RaiseIf(code);
}

/** The form has this default look already. One that cannot be read is another. */
bool HasDefaultLook(LexObj form, const TextAppearance *look) {
    TextAppearance present{};
    const KRErrorCode code = Protect([&] { TessellaGetDefaultTextAppearance(form, &present); });
    return code == KRErrNone && TextAppearanceEqual(&present, look);
}

} // namespace

bool TessellaIsValid(LexObj form) {
    if (!IsDict(form)) return false;
    if (LexObjEqual(form, s_lastValidForm)) return true;
    if (!IsArray(LexDictGet(form, formFields_K))) return false;
    KRFixed version = 0;
    if (TSLexDictLoad<LexFixed>(form, Tessella_K, &version) == 0 && version < OldestVersion) return false;
    s_lastValidForm = form;
    return true;
}

bool IsDMDocTessella(DMDoc doc) {
    return TessellaIsValid(TSDMDocGetTessella(doc));
}

LexObj TessellaGetLexObj(LexObj form) {
    return TessellaIsValid(form) ? form : LexNullObj;
}

LexObj TSLexObjGetTessella(LexObj obj) {
    if (IsNull(obj) || !LexObjIsIndirect(obj)) return LexNullObj;
    return TSLexDocGetTessella(LexObjGetDoc(obj));
}

LexObj TSDMDocGetTessella(DMDoc doc) {
    return doc ? TSLexDocGetTessella(DMDocGetLexDoc(doc)) : LexNullObj;
}

LexObj TSLexDocGetTessella(LexDoc doc) {
    return doc ? TSLexDictGetOfType(LexDocGetRoot(doc), spec_K, LexDict) : LexNullObj;
}

LexObj TSDMDocCreateForm(DMDoc doc) {
    if (!doc) return LexNullObj;
    LexObj form = LexNullObj;
    KRErrorCode code = Protect([&] {
        form = TSLexDictEnsureEx(LexDocGetRoot(DMDocGetLexDoc(doc)), spec_K, /*indirect*/ true);
        TSLexArrayEnsure(form, formFields_K, /*indirect*/ false);
    });
    if (code != KRErrNone) return LexNullObj;
    TextAppearance look = TextAppearanceDefault();
    look.fontResource = KRAtomNull;
    code = Protect([&] { TessellaSetDefaultTextAppearance(form, &look); });
    if (code != KRErrNone) return LexNullObj;
    TSFieldNotifyRec record{};
    record.doc = doc;
    TessellaBroadcast(TSFormDidCreate, &record);
    return form;
}

LexObj TessellaGetEntry(LexObj form, std::uint32_t entry) {
    const KRAtom key = Entry_to_Name(entry);
    return key != KRAtomNull && TessellaIsValid(form) ? LexDictGet(form, key) : LexNullObj;
}

void TessellaGetDefaultTextAppearance(LexObj form, TextAppearance *look) {
    if (!look || !TessellaIsValid(form)) return;
    const LexObj text = LexDictGet(form, textApp_K);
    if (IsString(text)) {
        TSLexStringGetTextAppearance(text, look);
        const LexObj fonts = FormFonts(form);
        if (!IsDict(fonts) || look->fontResource == KRAtomNull) KRRaise(KRErrBadResource);
        look->baseFont = FontDictGetBaseFontName(LexDictGet(fonts, look->fontResource));
    } else {
        *look = TextAppearance{};
        look->baseFont = look->fontResource = KRAtomNull;
    }
    look->quadding = static_cast<std::uint16_t>(QuaddingOf(form));
}

void TessellaSetDefaultTextAppearance(LexObj form, TextAppearance *look) {
    if (!look || !TessellaIsValid(form)) return;
    std::uint32_t changed = SetQuadding(form, look->quadding);
    // Before the font is asked for, since making it makes the resources, without the font of check marks.
    if (CanGenerateFont(look->baseFont)) EnsureFormFonts(form);
    const LexObj font = TSLexDocGetFontDict(LexObjGetDoc(form), look->baseFont);
    if (!IsDict(font)) KRRaise(KRErrBadParam);
    changed |= TessellaSetDefaultBaseFont(form, font);
    look->fontResource = look->baseFont;
    TSLexDictLoad<LexName>(font, Name_K, &look->fontResource);
    TextAppearanceHomogenizeColors(look);
    if (HasDefaultLook(form, look)) return;
    WriteDefaultLook(form, look);
    TessellaEntryUpdated(form, changed | TSEntryDA);
}

void TessellaHasWastedAnnots(LexObj form) {
    if (!TessellaIsValid(form) || LexDictKnown(form, waste_K)) return;
    LexDictPut(form, waste_K, LexNewBoolean(LexObjGetDoc(form), /*indirect*/ false, true));
}

void TessellaWasteAnnot(DMAnnot annot) {
    DMAnnotSetFlags(annot, TessellaWastedFlags);
    TessellaHasWastedAnnots(TSLexObjGetTessella(DMAnnotGetLexObj(annot)));
}

bool CreateTessellaNotificationServer() {
    if (TessellaNotificationServer) return true;
    TessellaNotificationServer = new (std::nothrow) NotificationServer *[TSServerCount] {};
    if (!TessellaNotificationServer) return false;
    for (int index = TSServerCount; index-- > 0;)
        TessellaNotificationServer[index] = NotificationServerNew(/*maxObservers*/ 0, /*replaceOldest*/ false);
    return true;
}

void DestroyTessellaNotificationServer() {
    if (!TessellaNotificationServer) return;
    std::for_each_n(TessellaNotificationServer, static_cast<int>(TSServerCount), &NotificationServerDestroy);
    delete[] TessellaNotificationServer;
    TessellaNotificationServer = nullptr;
}

NotificationServer *TessellaGetNotificationServer(std::int32_t index) {
    return TessellaNotificationServer && index >= 0 && index < TSServerCount ? TessellaNotificationServer[index]
                                                                             : nullptr;
}

std::int32_t TessellaRegisterObserver(std::int32_t index, TSNotifyProc proc, TSNotifyFailureProc failure,
                                      void *clientData) {
    return NotificationServerRegisterObserver(TessellaGetNotificationServer(index), proc, failure, clientData);
}

void TessellaUnregisterObserver(std::int32_t index, std::int32_t id) {
    NotificationServerUnregisterObserver(TessellaGetNotificationServer(index), id);
}

void TessellaBroadcast(TSServer server, TSFieldNotifyRec *record) {
    if (NotificationServer *observers = TessellaGetNotificationServer(server))
        NotificationServerBroadcast(observers, record);
}
