// Annotations of a page, with the notifications around their changes.
// SPDX-License-Identifier: MIT
#include "doc/Annots.h"

#include <algorithm>
#include <exception>

#include "doc/DocRecord.h"
#include "doc/Keys.h"
#include "doc/Notify.h"
#include "doc/Pages.h"
#include "kernel/HostError.h"
#include "lex/LexApi.h"
#include "lex/LexObjects.h"

namespace jackdaw {
namespace {

/** The array of the page's annotations; null when it has none. */
LexObj annotArray(const DMPageRec &page) {
    if (!lex::IsDict(page.dict)) return lex::NullObj;
    const LexObj array = lex::DictGet(page.dict, Keys().Annots);
    return lex::IsArray(array) ? array : lex::NullObj;
}

std::int32_t lengthOf(LexObj array) {
    return lex::IsNull(array) ? 0 : lex::ArrayLength(array);
}

/** Changes an entry between DMAnnotWillChange and DMAnnotDidChange, which carries the code when the change fails. */
void changeEntry(DMAnnot annot, KRAtom key, LexObj value) {
    NotifyAnnotWillChange(annot, key);
    std::exception_ptr failure;
    KRErrorCode code = KRErrNone;
    try {
        lex::DictPut(AnnotLex(annot), key, value);
    } catch (...) {
        failure = std::current_exception();
        code = CodeOfCurrentException();
    }
    NotifyAnnotDidChange(annot, key, code);
    if (failure) std::rethrow_exception(failure);
}

/** The document of an annotation that is about to change. */
LexDoc docOfAnnot(DMAnnot annot) {
    if (!lex::IsDict(AnnotLex(annot))) throw HostError{KRErrBadParam};
    return lex::DocOf(AnnotLex(annot));
}

DMPageRec &checkStandingPage(DMPage page) {
    DMPageRec &record = CheckPage(page);
    if (!lex::IsDict(record.dict) || PageNumber(page) < 0) throw HostError{KRErrBadParam};
    return record;
}

void rememberPlaces(DMPageRec &page, LexObj array) {
    page.annotPlaces.clear();
    page.annotStamp = lex::ChangeStamp(page.doc->lex);
    page.annotsRepeat = false;
    // Backwards, so that an annotation that stands there twice is found at its first place.
    for (std::int32_t i = lex::ArrayLength(array) - 1; i >= 0; --i) {
        const LexObj annot = lex::ArrayGet(array, i);
        if (lex::IsNull(annot)) continue;
        const bool isNew = page.annotPlaces.insert_or_assign(annot.node, i).second;
        if (!isNew) page.annotsRepeat = true;
    }
}

std::int32_t rememberedPlace(const DMPageRec &page, LexObj array, LexObj annot) {
    const auto found = page.annotPlaces.find(annot.node);
    if (found == page.annotPlaces.end()) return -1;
    return lex::Same(lex::ArrayGet(array, found->second), annot) ? found->second : -1;
}

} // namespace

KRAtom AnnotSubtype(DMAnnot annot) {
    const LexObj dict = AnnotLex(annot);
    return lex::IsDict(dict) ? lex::NameOrNone(lex::DictGet(dict, Keys().Subtype)) : KRAtomNull;
}

bool AnnotIsValid(DMAnnot annot) {
    return AnnotSubtype(annot) != KRAtomNull;
}

KRFixedRect RectOfAnnot(DMAnnot annot) {
    const LexObj dict = AnnotLex(annot);
    KRFixedRect rect;
    if (!lex::IsDict(dict) || !ReadRect(lex::DictGet(dict, Keys().Rect), &rect)) {
        throw HostError{KRErrBadParam};
    }
    return rect;
}

void SetRectOfAnnot(DMAnnot annot, const KRFixedRect &rect) {
    changeEntry(annot, Keys().Rect, NewRectArray(docOfAnnot(annot), rect));
}

std::uint32_t AnnotFlags(DMAnnot annot) {
    const LexObj dict = AnnotLex(annot);
    if (!lex::IsDict(dict)) return 0;
    const LexObj flags = lex::DictGet(dict, Keys().F);
    if (lex::TypeOf(flags) == LexFixed) return static_cast<std::uint32_t>(lex::FixedValue(flags) / KRFixedOne);
    return static_cast<std::uint32_t>(lex::IntegerOr(flags, 0));
}

void SetAnnotFlags(DMAnnot annot, std::uint32_t flags) {
    changeEntry(annot, Keys().F, lex::NewInteger(docOfAnnot(annot), /*indirect*/ false, flags));
}

std::int32_t NumAnnots(DMPage page) {
    return lengthOf(annotArray(CheckPage(page)));
}

DMAnnot PageAnnot(DMPage page, std::int32_t index) {
    const LexObj array = annotArray(CheckPage(page));
    if (index < 0 || index >= lengthOf(array)) throw HostError{KRErrBadParam};
    const LexObj annot = lex::ArrayGet(array, index);
    if (lex::IsDict(annot) && !lex::IsIndirect(annot)) lex::EnsureIndirect(annot);
    return AnnotFromLex(annot);
}

std::int32_t AnnotIndex(DMPage page, DMAnnot annot) {
    DMPageRec &record = CheckPage(page);
    const LexObj array = annotArray(record);
    const LexObj wanted = AnnotLex(annot);
    if (lex::IsNull(array) || lex::IsNull(wanted)) return -1;
    const bool fresh = !record.annotPlaces.empty() && record.annotStamp == lex::ChangeStamp(record.doc->lex);
    const std::int32_t place = fresh || !record.annotsRepeat ? rememberedPlace(record, array, wanted) : -1;
    if (place >= 0 || fresh) return place;
    rememberPlaces(record, array);
    return rememberedPlace(record, array, wanted);
}

DMAnnot CreateAnnot(DMPage page, KRAtom subtype, const KRFixedRect &rect) {
    const DMPageRec &record = CheckPage(page);
    if (subtype == KRAtomNull) throw HostError{KRErrBadParam};
    const LexDoc doc = record.doc->lex;
    const LexObj dict = lex::NewDict(doc, /*indirect*/ true);
    lex::DictPut(dict, Keys().Type, lex::NewName(doc, /*indirect*/ false, Keys().Annot));
    lex::DictPut(dict, Keys().Subtype, lex::NewName(doc, /*indirect*/ false, subtype));
    lex::DictPut(dict, Keys().Rect, NewRectArray(doc, rect));
    return AnnotFromLex(dict);
}

void AddAnnot(DMPage page, std::int32_t index, DMAnnot annot) {
    DMPageRec &record = checkStandingPage(page);
    const LexDoc doc = record.doc->lex;
    const LexObj dict = AnnotLex(annot);
    if (docOfAnnot(annot) != doc || index < -2 || index >= NumAnnots(page)) throw HostError{KRErrBadParam};
    lex::EnsureIndirect(dict);
    const DocHold hold(*record.doc);
    NotifyPageAnnot(DMPageWillAddAnnot, page, annot);
    DMPageRec &still = checkStandingPage(page);
    LexObj array = annotArray(still);
    if (lex::IsNull(array)) {
        array = lex::NewArray(doc, /*indirect*/ false);
        lex::DictPut(still.dict, Keys().Annots, array);
    }
    const std::int32_t place = index == -2 ? lex::ArrayLength(array) : index + 1;
    lex::DictPut(dict, Keys().P, still.dict);
    lex::ArrayInsert(array, place, dict);
    NotifyPageAnnot(DMPageDidAddAnnot, page, annot);
}

void RemoveAnnot(DMPage page, std::int32_t index) {
    DMPageRec &record = CheckPage(page);
    const LexObj annot = AnnotLex(PageAnnot(page, index));
    const DocHold hold(*record.doc);
    NotifyAnnotIndex(DMPageWillRemoveAnnot, page, index);
    const LexObj array = annotArray(CheckPage(page));
    // A subscriber may have moved what stood at the index.
    std::int32_t place = index;
    if (place >= lengthOf(array) || !lex::Same(lex::ArrayGet(array, place), annot)) {
        place = lex::IsNull(array) || lex::IsNull(annot) ? -1 : lex::ArrayIndexOf(array, annot);
    }
    if (place >= 0) lex::ArrayRemoveAt(array, place);
    NotifyAnnotIndex(DMPageDidRemoveAnnot, page, index);
}

} // namespace jackdaw
