// Making the record of a field dictionary, and putting right the shapes that earlier writers left in files.
//
//  1. A record is defined under its name before its parent is asked for: leaves come before their nodes in the chains.
//  2. Whatever is raised while a record is built undefines it; TSDMFieldFromLexObj turns that into "no field".
//  3. Reading a form writes nothing that the record can hold: a root keeps a title with dots in it, and a field that
//     finds no place in the tree stays where it is, under its name and without a parent. Roots are put into each other
//     only while a form is assembled from pages.
// SPDX-License-Identifier: MIT
#include "model/DMField.h"

#include <string>
#include <string_view>

#include "Common/src/miLexType.h"
#include "Common/unix/mdMessages.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "base/Limits.h"
#include "model/DMFieldValue.h"
#include "model/FieldArray.h"
#include "model/FieldName.h"
#include "model/FieldRemoval.h"
#include "model/LexField.h"
#include "model/NameHash.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"
#include "services/Warnings.h"

namespace {

bool HasParent(LexObj dict) {
    return IsDict(TSLexDictGetOfType(dict, parent_K, LexDict));
}

LexObj FieldsOf(LexObj dict) {
    return TSLexDictGetOfType(TSLexObjGetTessella(dict), Fields_K, LexArray);
}

/**
 * Takes the title from a widget and has it hung into the tree under its full name. When that fails the widget is hidden
 * and will be removed by the next save.
 */
DMField *MoveWidgetIntoTree(LexObj dict, std::string_view fullName) {
    const std::string name(fullName);
    const DMAnnot annot = DMAnnotFromLexObj(dict);
    LexDictRemove(dict, T_K);
    DMField *field = TSDMAnnotDefineField(annot, name.c_str());
    const bool arrived = TSDMFieldIsValid(field);
    if (!arrived) TessellaWasteAnnot(annot);
    // What hangs below another is no root any more.
    if (!arrived || HasParent(dict)) FieldArrayRemove(FieldsOf(dict), dict);
    return field;
}

/** Makes the document's form if it has no valid one; false when there is still none then. */
bool EnsureForm(LexObj dict) {
    LexObj form = TSLexObjGetTessella(dict);
    if (!TessellaIsValid(form)) form = TSDMDocCreateForm(DMDocFromLexDoc(LexObjGetDoc(dict)));
    return TessellaIsValid(form);
}

/** The form is being put together from pages: roots may have to be merged. */
bool IsAssembling(LexObj dict) {
    const DocHashControl *control = TSLexDocFindHashHead(LexObjGetDoc(dict));
    return control && control->assembling;
}

/** The record of a dictionary under construction; undefined in the end unless it was given away. */
class NewRecord {
public:
    NewRecord(std::string_view name, LexObj dict) : dict(dict), field(AllocDMField(name, dict)) {}
    /** The record, if it is still there: what is called meanwhile may have undefined it. */
    DMField *Get() const {
        return field && TSLexObjFindDMField(dict) == field ? field : nullptr;
    }
    void Undefine() {
        DMField *record = Get();
        field = nullptr;
        TSDMFieldUndefine(record);
    }

private:
    LexObj dict;
    DMField *field;
};

/** What belongs inside another root goes there: a widget by its name, a subtree in pieces that will come by their own.
 */
DMField *MergeIntoRoot(LexObj dict, std::string_view name) {
    if (LexDictKnown(dict, Kids_K)) {
        TSLexDictRemoveHierarchy(dict);
        return nullptr;
    }
    return DictIsWidget(dict) ? MoveWidgetIntoTree(dict, name) : nullptr;
}

enum class Placed { Yes, No, Merged };

/** Settles a root in `Fields`. `merged` is the field that came of it when it went into another root. */
Placed PlaceRoot(NewRecord *record, LexObj dict, std::string_view name, DMField **merged) {
    LexDictRemove(dict, parent_K);
    if (!EnsureForm(dict)) return Placed::No;
    const LexObj fields = FieldsOf(dict);
    if (IsAssembling(dict) && FieldArrayHasRootOf(fields, dict, name)) {
        record->Undefine();
        *merged = MergeIntoRoot(dict, name);
        return Placed::Merged;
    }
    if (!FieldArrayHas(fields, dict)) FieldArrayAppend(fields, dict);
    return Placed::Yes;
}

void Complete(DMField *field) {
    PopulateDMField(field);
    field->state &= ~DMFieldInvalid;
    if (field->state & DMFieldDisplayDue) TSDMFieldProduceDisplayFromValue(field, TSDMFieldGetValue(field));
}

DMField *BuildRecord(NewRecord *record, LexObj dict, std::string_view name) {
    if (!record->Get()) return nullptr;
    Placed placed = Placed::Yes;
    DMField *merged = nullptr;
    if (!HasParent(dict))
        placed = PlaceRoot(record, dict, name, &merged);
    else if (!DMFieldLinkToParent(record->Get()))
        placed = Placed::No;
    if (placed == Placed::Merged) return merged;
    if (placed == Placed::No || !record->Get()) {
        record->Undefine();
        return nullptr;
    }
    Complete(record->Get());
    return record->Get();
}

DMField *CreateDMField(std::string_view name, LexObj dict) {
    NewRecord record(name, dict);
    DMField *field = nullptr;
    const KRErrorCode code = Protect([&] { field = BuildRecord(&record, dict, name); });
    if (code != KRErrNone) {
        Protect([&] { record.Undefine(); });
        KRRaise(code);
    }
    return field;
}

/** A field that finds no place in the tree is known by its name all the same. */
DMField *CreateAlone(std::string_view name, LexObj dict) {
    if (!TessellaIsValid(TSLexObjGetTessella(dict))) return nullptr;
    DMField *field = AllocDMField(name, dict);
    if (!field) return nullptr;
    DMFieldComplete(field);
    field = TSLexObjFindDMField(dict);
    if (field) TSWarn(TSDMFieldGetDoc(field), TSDMFieldGetName(field), Msg::warnUnplaced);
    return field;
}

DMField *CreateDMFieldFilter(std::string_view name, LexObj dict) {
    DMField *field = CreateDMField(name, dict);
    if (field || !IsDict(dict)) return field;
    const bool hasTitle = LexDictKnown(dict, T_K);
    if (!hasTitle && !LexDictKnown(dict, parent_K)) return nullptr;
    field = TSLexObjFindDMField(dict);
    if (field && !field->firstChild) return field;
    if (!hasTitle || !DictIsWidget(dict)) return nullptr;
    const std::uint32_t flags = DMAnnotGetFlags(DMAnnotFromLexObj(dict));
    if ((flags & TessellaWastedFlags) == TessellaWastedFlags) return nullptr;
    return IsAssembling(dict) ? MoveWidgetIntoTree(dict, name) : CreateAlone(name, dict);
}

std::string TitleOf(LexObj dict) {
    FieldName title;
    return FieldTitleText(LexDictGet(dict, T_K), &title) ? std::string(title.text, title.length) : std::string();
}

void FlattenInto(LexObj dict, const std::string &prefix, int depth);

/** Gives one kid its path as a title of its own, with what it inherited. */
void ReleaseKid(LexObj parent, LexObj kid, const std::string &prefix, int depth) {
    TSDMFieldUndefine(TSLexObjFindDMField(kid));
    const bool hasTitle = LexDictKnown(kid, T_K);
    const std::string name = hasTitle ? prefix + "." + TitleOf(kid) : prefix;
    LexDictRemove(kid, parent_K);
    LexDictPut(kid, T_K, FieldTitleOfText(LexObjGetDoc(kid), name));
    TSLexDictPartialCopy(parent, kid, /*sameDocument*/ true);
    if (LexDictKnown(kid, Kids_K)) FlattenInto(kid, name, depth + 1);
}

void FlattenInto(LexObj dict, const std::string &prefix, int depth) {
    const LexObj kids = LexDictGet(dict, Kids_K);
    // Taken off first: kids do not inherit it, and a kid that lists its parent again finds no kids there.
    LexDictRemove(dict, Kids_K);
    if (!IsArray(kids) || depth > TSLimitOf(TSLimitFieldDepth)) return;
    LexDictRemove(dict, T_K);
    for (std::int32_t i = LexArrayLength(kids); i-- > 0;) {
        const LexObj kid = LexArrayGet(kids, i);
        if (IsDict(kid) && !LexObjEqual(kid, dict)) ReleaseKid(dict, kid, prefix, depth);
    }
}

/** Makes the records of a group's kids: all widgets of one name exist as soon as one does. */
void LoadKids(DMField *top) {
    const LexObj kids = TSLexDictGetOfType(top->obj, Kids_K, LexArray);
    if (!IsArray(kids)) return;
    const std::int32_t length = LexArrayLength(kids);
    if (top->kidsLoaded == length) return;
    top->state |= DMFieldLoadingKids;
    for (std::int32_t i = length; i-- > 0;) TSDMFieldFromLexObj(LexArrayGet(kids, i));
    top->state &= ~DMFieldLoadingKids;
    top->kidsLoaded = LexArrayLength(kids);
}

/** The dictionary and those above it, as far as they have no records, have names and stand in the arrays that should
 * list them. */
bool IsListed(LexObj dict) {
    for (int depth = 0; depth <= TSLimitOf(TSLimitFieldDepth); ++depth) {
        const LexObj parent = TSLexDictGetOfType(dict, parent_K, LexDict);
        if (!IsDict(parent)) return LexDictKnown(dict, T_K) && FieldArrayHas(FieldsOf(dict), dict);
        if (!FieldArrayHas(TSLexDictGetOfType(parent, Kids_K, LexArray), dict)) return false;
        if (TSLexObjFindDMField(parent)) return true;
        dict = parent;
    }
    return false;
}

/** Where the form's arrays and `Parent` disagree, the arrays decide: a load goes through them from the top. */
DMField *FindAfterLoad(LexObj dict) {
    const LexDoc doc = LexObjGetDoc(dict);
    const DocHashControl *control = TSLexDocFindHashHead(doc);
    if (!control || control->loaded || control->assembling || IsListed(dict)) return nullptr;
    TSDMDocLoadFieldsIfNeeded(control->doc);
    return TSLexObjFindDMField(dict);
}

} // namespace

DMField *TSDMFieldFromLexObj(LexObj dict) {
    if (!IsDict(dict) || !LexObjIsIndirect(dict)) return nullptr;
    if (!TSLexDocEditOK(LexObjGetDoc(dict))) return nullptr;
    if (DMField *cached = TSLexObjGetCachedDMField(dict)) return cached;
    if (DMField *known = TSLexObjFindDMField(dict)) return known;
    DMField *field = nullptr;
    const KRErrorCode code = Protect([&] {
        FieldName name;
        field = FindAfterLoad(dict);
        if (!field && FormFieldNameAcquire(dict, &name)) field = CreateDMFieldFilter({name.text, name.length}, dict);
    });
    return code == KRErrNone ? field : nullptr;
}

DMField *DMFieldCreateNameless(LexObj root) {
    DMField *field = AllocDMField("", root);
    if (field) DMFieldComplete(field);
    return TSLexObjFindDMField(root);
}

bool DMFieldLinkToParent(DMField *field) {
    DMField *parent = TSDMFieldFromLexObj(TSLexDictGetOfType(field->obj, parent_K, LexDict));
    if (!parent || !DMFieldLinkChild(parent, field)) return false;
    if (parent->name != field->name || field->nextSibling) return true;
    DMField *top = DMFieldTopOfName(field);
    if (!(top->state & DMFieldLoadingKids)) LoadKids(top);
    return true;
}

void PopulateDMField(DMField *field) {
    TSDMFieldUpdateFlags(field);
    TSDMFieldUpdateEntries(field);
    const LexObj type = LexDictGet(field->obj, FT_K);
    if (IsName(type))
        field->type = LexNameValue(type);
    else if (IsNull(type))
        field->type = field->parent ? field->parent->type : KRAtomNull;
}

void DMFieldComplete(DMField *field) {
    const LexObj dict = field->obj;
    const KRErrorCode code = Protect([&] { Complete(field); });
    if (code == KRErrNone) return;
    Protect([&] {
        if (TSLexObjFindDMField(dict) == field) TSDMFieldUndefine(field);
    });
    KRRaise(code);
}

void TSLexDictRemoveHierarchy(LexObj dict) {
    if (!IsDict(dict)) return;
    if (!LexDictKnown(dict, T_K)) {
        LexObjDestroy(dict);
        return;
    }
    FlattenInto(dict, TitleOf(dict), /*depth*/ 0);
}
