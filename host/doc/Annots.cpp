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
    if (lex::typeOf(page.dict) != LexDict) return lex::nullObj;
    const LexObj array = lex::dictGet(page.dict, keys().Annots);
    return lex::typeOf(array) == LexArray ? array : lex::nullObj;
}

std::int32_t lengthOf(LexObj array) {
    return lex::isNull(array) ? 0 : lex::arrayLength(array);
}

/** Changes an entry between 40 and 41, which carries the code when the change fails. */
void changeEntry(DMAnnot annot, KRAtom key, LexObj value) {
    notifyAnnotWillChange(annot, key);
    std::exception_ptr failure;
    KRErrorCode code = KRErrNone;
    try {
        lex::dictPut(annotLex(annot), key, value);
    } catch (...) {
        failure = std::current_exception();
        code = CodeOfCurrentException();
    }
    notifyAnnotDidChange(annot, key, code);
    if (failure) std::rethrow_exception(failure);
}

/** The document of an annotation that is about to change. */
LexDoc docOfAnnot(DMAnnot annot) {
    if (lex::typeOf(annotLex(annot)) != LexDict) throw HostError{KRErrBadParam};
    return lex::docOf(annotLex(annot));
}

DMPageRec &checkStandingPage(DMPage page) {
    DMPageRec &record = checkPage(page);
    if (lex::typeOf(record.dict) != LexDict || pageNumber(page) < 0) throw HostError{KRErrBadParam};
    return record;
}

void rememberPlaces(DMPageRec &page, LexObj array) {
    page.annotPlaces.clear();
    page.annotStamp = lex::changeStamp(page.doc->lex);
    page.annotsRepeat = false;
    // Backwards, so that an annotation that stands there twice is found at its first place.
    for (std::int32_t i = lex::arrayLength(array) - 1; i >= 0; --i) {
        const LexObj annot = lex::arrayGet(array, i);
        if (lex::isNull(annot)) continue;
        const bool isNew = page.annotPlaces.insert_or_assign(annot.node, i).second;
        if (!isNew) page.annotsRepeat = true;
    }
}

std::int32_t rememberedPlace(const DMPageRec &page, LexObj array, LexObj annot) {
    const auto found = page.annotPlaces.find(annot.node);
    if (found == page.annotPlaces.end()) return -1;
    return lex::same(lex::arrayGet(array, found->second), annot) ? found->second : -1;
}

} // namespace

KRAtom annotSubtype(DMAnnot annot) {
    const LexObj dict = annotLex(annot);
    return lex::typeOf(dict) == LexDict ? lex::nameOrNone(lex::dictGet(dict, keys().Subtype)) : KRAtomNull;
}

bool annotIsValid(DMAnnot annot) {
    return annotSubtype(annot) != KRAtomNull;
}

KRFixedRect annotRect(DMAnnot annot) {
    const LexObj dict = annotLex(annot);
    KRFixedRect rect;
    if (lex::typeOf(dict) != LexDict || !readRect(lex::dictGet(dict, keys().Rect), &rect)) {
        throw HostError{KRErrBadParam};
    }
    return rect;
}

void setAnnotRect(DMAnnot annot, const KRFixedRect &rect) {
    changeEntry(annot, keys().Rect, newRectArray(docOfAnnot(annot), rect));
}

std::uint32_t annotFlags(DMAnnot annot) {
    const LexObj dict = annotLex(annot);
    if (lex::typeOf(dict) != LexDict) return 0;
    const LexObj flags = lex::dictGet(dict, keys().F);
    if (lex::typeOf(flags) == LexFixed) return static_cast<std::uint32_t>(lex::fixedValue(flags) / KRFixedOne);
    return static_cast<std::uint32_t>(lex::integerOr(flags, 0));
}

void setAnnotFlags(DMAnnot annot, std::uint32_t flags) {
    changeEntry(annot, keys().F, lex::newInteger(docOfAnnot(annot), /*indirect*/ false, flags));
}

std::int32_t numAnnots(DMPage page) {
    return lengthOf(annotArray(checkPage(page)));
}

DMAnnot pageAnnot(DMPage page, std::int32_t index) {
    const LexObj array = annotArray(checkPage(page));
    if (index < 0 || index >= lengthOf(array)) throw HostError{KRErrBadParam};
    const LexObj annot = lex::arrayGet(array, index);
    if (lex::typeOf(annot) == LexDict && !lex::isIndirect(annot)) lex::ensureIndirect(annot);
    return annotFromLex(annot);
}

std::int32_t annotIndex(DMPage page, DMAnnot annot) {
    DMPageRec &record = checkPage(page);
    const LexObj array = annotArray(record);
    const LexObj wanted = annotLex(annot);
    if (lex::isNull(array) || lex::isNull(wanted)) return -1;
    const bool fresh = !record.annotPlaces.empty() && record.annotStamp == lex::changeStamp(record.doc->lex);
    const std::int32_t place = fresh || !record.annotsRepeat ? rememberedPlace(record, array, wanted) : -1;
    if (place >= 0 || fresh) return place;
    rememberPlaces(record, array);
    return rememberedPlace(record, array, wanted);
}

DMAnnot createAnnot(DMPage page, KRAtom subtype, const KRFixedRect &rect) {
    const DMPageRec &record = checkPage(page);
    if (subtype == KRAtomNull) throw HostError{KRErrBadParam};
    const LexDoc doc = record.doc->lex;
    const LexObj dict = lex::newDict(doc, /*indirect*/ true);
    lex::dictPut(dict, keys().Type, lex::newName(doc, /*indirect*/ false, keys().Annot));
    lex::dictPut(dict, keys().Subtype, lex::newName(doc, /*indirect*/ false, subtype));
    lex::dictPut(dict, keys().Rect, newRectArray(doc, rect));
    return annotFromLex(dict);
}

void addAnnot(DMPage page, std::int32_t index, DMAnnot annot) {
    DMPageRec &record = checkStandingPage(page);
    const LexDoc doc = record.doc->lex;
    const LexObj dict = annotLex(annot);
    if (docOfAnnot(annot) != doc || index < -2 || index >= numAnnots(page)) throw HostError{KRErrBadParam};
    lex::ensureIndirect(dict);
    const DocHold hold(*record.doc);
    notifyPageAnnot(DMPageWillAddAnnot, page, annot);
    DMPageRec &still = checkStandingPage(page);
    LexObj array = annotArray(still);
    if (lex::isNull(array)) {
        array = lex::newArray(doc, /*indirect*/ false);
        lex::dictPut(still.dict, keys().Annots, array);
    }
    const std::int32_t place = index == -2 ? lex::arrayLength(array) : index + 1;
    lex::dictPut(dict, keys().P, still.dict);
    lex::arrayInsert(array, place, dict);
    notifyPageAnnot(DMPageDidAddAnnot, page, annot);
}

void removeAnnot(DMPage page, std::int32_t index) {
    DMPageRec &record = checkPage(page);
    const LexObj annot = annotLex(pageAnnot(page, index));
    const DocHold hold(*record.doc);
    notifyAnnotIndex(DMPageWillRemoveAnnot, page, index);
    const LexObj array = annotArray(checkPage(page));
    // A subscriber may have moved what stood at the index.
    std::int32_t place = index;
    if (place >= lengthOf(array) || !lex::same(lex::arrayGet(array, place), annot)) {
        place = lex::isNull(array) || lex::isNull(annot) ? -1 : lex::arrayIndexOf(array, annot);
    }
    if (place >= 0) lex::arrayRemoveAt(array, place);
    notifyAnnotIndex(DMPageDidRemoveAnnot, page, index);
}

} // namespace jackdaw
