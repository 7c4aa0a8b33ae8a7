// Defining fields: hanging a dictionary into the tree under a full name.
// SPDX-License-Identifier: MIT
#include "model/LexField.h"

#include <string>
#include <string_view>
#include <vector>

#include "Common/src/miLexType.h"
#include "DocModelHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/DMFieldValueParts.h"
#include "model/FieldArray.h"
#include "model/FieldName.h"
#include "model/FieldRemoval.h"
#include "model/LexFieldParts.h"
#include "model/NameHash.h"
#include "model/NameHashCheck.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

namespace {

/** How far the parts of a name have led. */
struct Path {
    DMDoc doc;
    LexDoc lexDoc;
    LexObj form;
    /** Null at the root. */
    DMField *at;
    LexObj atObj;
    /** Full name of the part being looked for. */
    std::string name;
};

std::string_view WithoutTrailingDots(std::string_view name) {
    while (!name.empty() && name.back() == '.') name.remove_suffix(1);
    return name;
}

std::vector<std::string> SplitName(std::string_view name) {
    std::vector<std::string> parts;
    name = WithoutTrailingDots(name);
    while (!name.empty()) {
        const std::size_t dot = name.find('.');
        parts.emplace_back(name.substr(0, dot));
        name.remove_prefix(dot == name.npos ? name.size() : dot + 1);
    }
    return parts;
}

/** `Kids` of the place that the path has reached, or `Fields`; the null object when there is no such array. */
LexObj Siblings(const Path &path) {
    return path.at ? TSLexDictGetOfType(path.at->obj, Kids_K, LexArray)
                   : TSLexDictGetOfType(path.form, formFields_K, LexArray);
}

/** Loading a sibling may show it, and observers of that may take away the place itself. */
bool StillThere(const Path &path) {
    return !path.at || DMFieldIsAlive(path.at, path.atObj);
}

void ExtendName(Path *path, const std::string &part) {
    if (path->at) path->name += '.';
    path->name += part;
}

/** A node for a part that is not there: a non-terminal field without kids yet. */
DMField *MakeNode(const Path &path, LexObj title) {
    const LexObj node = LexNewDict(path.lexDoc, /*indirect*/ true, 5);
    LexDictPut(node, T_K, title);
    LexDictPut(node, Kids_K, LexNewArray(path.lexDoc, /*indirect*/ false, 0));
    LexObj siblings = Siblings(path);
    if (path.at) {
        LexDictPut(node, parent_K, path.at->obj);
        siblings = TSLexArrayEnsure(path.at->obj, Kids_K, /*indirect*/ false);
    }
    FieldArrayAppend(siblings, node);
    DMField *field = TSDMFieldFromLexObj(node);
    if (!TSDMFieldIsValidCheckType(field)) return nullptr;
    field->state |= DMFieldNotTerminal;
    return field;
}

/** Goes on to the node of one part, which is made when it is missing. False when nothing may hang here. */
bool Descend(Path *path, const std::string &part) {
    const LexObj title = FieldTitleOfText(path->lexDoc, part);
    ExtendName(path, part);
    DMField *found = FieldSiblingFind(path->doc, path->at, Siblings(*path), title, path->name);
    if (!found) {
        if (!StillThere(*path) || (path->at && TSDMFieldIsTerminal(path->at))) return false;
        found = MakeNode(*path, title);
    }
    if (!found) return false;
    path->at = found;
    path->atObj = found->obj;
    return true;
}

/** A dictionary joins the field that has its name. */
DMField *PlaceBeside(DMField *found, LexObj dict) {
    if (!TSDMFieldNewTocayo(found, dict)) return nullptr;
    return TSLexDictSetTitleGetField(dict, LexNullObj);
}

/** The dictionary becomes a kid of the path's end under a title that is free there. */
DMField *PlaceBelow(const Path &path, LexObj dict, LexObj title) {
    if (path.at) {
        LexDictPut(dict, parent_K, path.at->obj);
        FieldArrayAppend(TSLexArrayEnsure(path.at->obj, Kids_K, /*indirect*/ false), dict);
    } else {
        LexDictRemove(dict, parent_K);
    }
    return TSLexDictSetTitleGetField(dict, title);
}

DMField *PlaceLeaf(Path *path, LexObj dict, const std::string &part) {
    const LexObj title = FieldTitleOfText(path->lexDoc, part);
    const LexObj siblings = Siblings(*path);
    ExtendName(path, part);
    if (DMField *found = FieldSiblingFind(path->doc, path->at, siblings, title, path->name))
        return PlaceBeside(found, dict);
    if (!StillThere(*path)) return nullptr;
    // Neither a widget's own field nor a group of widgets may have fields below it.
    const bool hasKids = IsArray(siblings);
    if (path->at && !hasKids && TSDMFieldIsAnnot(path->at)) return nullptr;
    if (path->at && path->at->firstChild && TSDMFieldIsTerminal(path->at)) return nullptr;
    return PlaceBelow(*path, dict, title);
}

/** The dictionary's field, when it has this name already; a field of another name is given up. */
DMField *OwnFieldOfName(LexObj dict, std::string_view name) {
    DMField *own = EnsureNoDMFieldForDict(dict, /*wipe*/ false);
    if (!own) return nullptr;
    if (TSDMFieldIsValid(own) && name == TSDMFieldGetName(own)) return own;
    TSDMFieldUndefine(own);
    return nullptr;
}

/** A root whose title is the whole of this name, dots and all; null. */
DMField *FlatRoot(DMDoc doc, const std::string &name) {
    if (name.find('.') == name.npos) return nullptr;
    DMField *field = TSDMDocGetDMFieldFromName(doc, name.c_str());
    return field && !field->parent && IsString(LexDictGet(field->obj, T_K)) ? field : nullptr;
}

/** Begins the path at the longest start of the name that is a root by itself; gives what is left of the name. */
std::string_view StartPath(Path *path, std::string_view name) {
    for (std::size_t dot = name.rfind('.'); dot != name.npos && dot > 0; dot = name.rfind('.', dot - 1)) {
        DMField *root = FlatRoot(path->doc, std::string(name.substr(0, dot)));
        if (!root) continue;
        path->at = root;
        path->atObj = root->obj;
        path->name = name.substr(0, dot);
        return name.substr(dot + 1);
    }
    return name;
}

DMField *DefineUnder(LexObj dict, std::string_view name) {
    Path path{};
    path.lexDoc = LexObjGetDoc(dict);
    path.doc = DMDocFromLexDoc(path.lexDoc);
    TSDMDocLoadFieldsIfNeeded(path.doc);
    if (DMField *own = OwnFieldOfName(dict, name)) return own;
    if (name.size() > MaxFieldNameLength) return nullptr;
    if (!TessellaIsValid(TSDMDocGetTessella(path.doc))) TSDMDocCreateForm(path.doc);
    path.form = TSDMDocGetTessella(path.doc);
    if (!TessellaIsValid(path.form)) return nullptr;
    if (DMField *same = FlatRoot(path.doc, std::string(name))) return PlaceBeside(same, dict);
    const std::vector<std::string> parts = SplitName(StartPath(&path, name));
    if (path.at && TSDMFieldIsTerminal(path.at)) return nullptr;
    for (std::size_t i = 0; i + 1 < parts.size(); ++i)
        if (!Descend(&path, parts[i])) return nullptr;
    return PlaceLeaf(&path, dict, parts.back());
}

/** What a failed definition leaves of a dictionary's place in the tree: nothing. */
void LeaveTree(LexObj dict) {
    const LexObj parent = TSLexDictGetOfType(dict, parent_K, LexDict);
    FieldArrayRemove(TSLexDictGetOfType(parent, Kids_K, LexArray), dict);
    LexDictRemove(dict, T_K);
    LexDictRemove(dict, parent_K);
}

/** Puts or removes `T`. A widget's change is announced. */
void PutTitle(LexObj dict, LexObj title) {
    const bool isAnnot = LexDictKnown(dict, Subtype_K);
    const DMAnnot annot = isAnnot ? DMAnnotFromLexObj(dict) : DMAnnot{0, 0};
    if (isAnnot) DMAnnotNotifyWillChange(annot, T_K);
    const KRErrorCode code = Protect([&] {
        if (!IsNull(title))
            LexDictPut(dict, T_K, title);
        else if (LexDictKnown(dict, T_K))
            LexDictRemove(dict, T_K);
    });
    if (isAnnot) DMAnnotNotifyDidChange(annot, T_K, code);
    RaiseIf(code);
}

/** Makes a wiped record the field of its dictionary again; null when that has no parent to hang under. */
DMField *Rebuild(DMField *record) {
    const bool hasParent = IsDict(TSLexDictGetOfType(record->obj, parent_K, LexDict));
    bool linked = true;
    const LexObj dict = record->obj;
    const KRErrorCode code = Protect([&] {
        if (hasParent) linked = DMFieldLinkToParent(record) && DMFieldIsAlive(record, dict);
        if (linked) DMFieldComplete(record);
    });
    if ((code != KRErrNone || !linked) && DMFieldIsAlive(record, dict)) TSDMFieldUndefine(record);
    RaiseIf(code);
    return linked && DMFieldIsAlive(record, dict) ? record : nullptr;
}

/** What the parent has need not stand in the field as well. */
void DropWhatParentHas(DMField *field) {
    DMField *parent = field->parent;
    for (std::uint32_t entry = TSEntryVT; entry; entry >>= 1) {
        if (!(field->entries & entry)) continue;
        const KRAtom key = Entry_to_Name(entry);
        const LexObj own = LexDictGet(field->obj, key);
        const LexObj theirs = TSDMFieldGetEntry(parent, entry);
        // A group's top answers with its widget's value when it has none: that one must stay.
        if (!TSLexObjEquivalent(own, theirs) || (LexObjEqual(own, theirs) && !(parent->entries & entry))) continue;
        LexDictRemove(field->obj, key);
        field->entries &= ~entry;
    }
    if (LexNameOrNull(LexDictGet(field->obj, FT_K)) == parent->type) LexDictRemove(field->obj, FT_K);
    const LexObj flags = TSLexDictGetOfType(field->obj, flagsF_K, LexInteger);
    if (IsInteger(flags) && static_cast<std::uint32_t>(LexIntegerValue(flags)) == parent->flags[TSFieldWord])
        LexDictRemove(field->obj, flagsF_K);
    TSLexArrayEnsure(parent->obj, Kids_K, /*indirect*/ false);
    if (TSDMFieldIsAnnot(field) && parent->flags[TSAnnotWord] != 0)
        TSDMFieldSetFlags(field, TSAnnotWord, field->flags[TSAnnotWord] | parent->flags[TSAnnotWord]);
}

} // namespace

DMField *TSLexDictDefineField(LexObj dict, const char *fullName) {
    if (!IsDict(dict) || !LexObjIsIndirect(dict) || !fullName) return nullptr;
    const std::string name(WithoutTrailingDots(fullName));
    // A node cannot go elsewhere by itself: the fields below it would lose their names.
    const DMField *own = TSLexObjFindDMField(dict);
    if (own && own->firstChild && (!TSDMFieldIsValid(own) || name != TSDMFieldGetName(own))) return nullptr;
    if (name.empty() || !DMDocFromLexDoc(LexObjGetDoc(dict)) || !TSLexDocEditOK(LexObjGetDoc(dict))) return nullptr;
    DMField *field = nullptr;
    const KRErrorCode code = Protect([&] { field = DefineUnder(dict, name); });
    if (!field) LeaveTree(dict);
    DocHashCheck(LexObjGetDoc(dict));
    RaiseIf(code);
    return field;
}

DMField *TSDMAnnotDefineField(DMAnnot annot, const char *name) {
    if (!name || !*name || !DMAnnotIsValid(annot) || DMAnnotGetSubtype(annot) != Widget_K) return nullptr;
    if (DMField *present = TSDMAnnotGetField(annot)) return present;
    const LexObj dict = DMAnnotGetLexObj(annot);
    DMField *field = TSLexDictDefineField(dict, name);
    if (!TSDMFieldIsValidCheckType(field)) return field;
    TSDMFieldUpdateAppearance(field);
    return TSLexObjFindDMField(dict);
}

DMField *TSLexDictSetTitleGetField(LexObj dict, LexObj title) {
    if (!IsDict(dict) || !TessellaIsValid(TSLexObjGetTessella(dict))) return nullptr;
    if (LexDictKnown(dict, Subtype_K) && LexNameOrNull(LexDictGet(dict, Subtype_K)) != Widget_K) return nullptr;
    DMField *field = EnsureNoDMFieldForDict(dict, /*wipe*/ true);
    PutTitle(dict, title);
    if (IsNull(title) && !LexDictKnown(dict, parent_K)) return nullptr;
    field = field ? Rebuild(field) : TSDMFieldFromLexObj(dict);
    if (!TSDMFieldIsValidCheckType(field)) return field;
    if (field->parent) {
        const LexObj parent = field->parent->obj;
        DropWhatParentHas(field);
        FieldArrayMoveToEnd(TSLexDictGetOfType(parent, Kids_K, LexArray), dict);
    } else {
        FieldArrayMoveToEnd(TSLexDictGetOfType(TSLexObjGetTessella(dict), formFields_K, LexArray), dict);
    }
    DocHashCheck(LexObjGetDoc(dict));
    return TSLexObjFindDMField(dict);
}

bool TSDMFieldIsValidCheckType(DMField *field) {
    if (!TSDMFieldIsValid(field)) return false;
    if (field->type == KRAtomNull || !(field->state & DMFieldSharesName)) return true;
    const auto clashes = [field](const DMField *other) {
        return other->type != KRAtomNull && other->type != field->type;
    };
    if (clashes(DMFieldHeadOfName(field))) return false;
    for (const DMField *at = field->nextSameName; at; at = at->nextSameName)
        if (clashes(at)) return false;
    return true;
}

DMField *EnsureNoDMFieldForDict(LexObj dict, bool wipe) {
    DMField *record = TSLexObjFindDMField(dict);
    if (record && wipe) DMFieldWipe(record);
    return record;
}
