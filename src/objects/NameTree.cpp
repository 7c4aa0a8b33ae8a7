// The name trees of a document and what is done with them.
// SPDX-License-Identifier: MIT
#include "objects/NameTree.h"

#include "Common/src/miEStr.h"
#include "Common/src/miLexType.h"
#include "CoreHFT.h"
#include "KRErrors.h"
#include "base/FormStr.h"
#include "objects/LexUtil.h"
#include "objects/NameTreeNode.h"

namespace {

LexObj CatalogNames(LexDoc doc, bool create) {
    const LexObj catalog = LexDocGetRoot(doc);
    LexObj names = TSLexDictGetOfType(catalog, Names_K, LexDict);
    if (IsDict(names) || !create) return names;
    names = LexNewDict(doc, /*indirect*/ true, /*sizeHint*/ 1);
    LexDictPut(catalog, Names_K, names);
    return names;
}

/** The root of a tree; the null object when it is absent and not to be made. */
LexObj TSLexDocGetNamesEntry(LexDoc doc, KRAtom tree, bool create) {
    const LexObj names = CatalogNames(doc, create);
    LexObj root = TSLexDictGetOfType(names, tree, LexDict);
    if (!create) return root;
    if (!IsDict(root)) {
        root = LexNewDict(doc, /*indirect*/ true, /*sizeHint*/ 1);
        LexDictPut(names, tree, root);
    }
    if (!LexDictKnown(root, Kids_K) && !LexDictKnown(root, Names_K)) {
        LexDictPut(root, Names_K, LexNewArray(doc, /*indirect*/ false, /*sizeHint*/ 32));
    }
    return root;
}

void TSUpdateCatalogNamesEntry(LexDoc doc, KRAtom tree, LexObj root) {
    LexDictPut(CatalogNames(doc, /*create*/ true), tree, root);
}

/** Takes a whole tree away, and `Names` with it when that leaves it empty. */
void TSRemoveNameTree(LexDoc doc, KRAtom tree) {
    const LexObj names = CatalogNames(doc, /*create*/ false);
    if (!IsDict(names)) return;
    TSDestroyNodes(TSLexDictGetOfType(names, tree, LexDict));
    LexDictRemove(names, tree);
    if (TSLexDictGetLen(names) > 0) return;
    LexDictRemove(LexDocGetRoot(doc), Names_K);
    LexObjDestroy(names);
}

/** A name as it stands in a tree. */
struct KeyText {
    explicit KeyText(const EStr *name) : text(EStrCopySetEncoding(name, EStrPDFDoc)) {
        if (!text) KRRaise(KRErrBadParam);
    }
    std::string_view Bytes() const {
        return {EStrGetBytes(text.get()), EStrGetLen(text.get())};
    }

    EStrPtr text;
};

struct ObjSearch {
    LexObj value;
    LexObj key;
};

KRBool CompareValue(LexObj key, LexObj value, void *data) {
    auto &search = *static_cast<ObjSearch *>(data);
    if (!LexObjEqual(value, search.value)) return true;
    search.key = key;
    return false;
}

} // namespace

void TSAddNameEntry(LexDoc doc, KRAtom tree, const EStr *name, LexObj value, std::uint32_t flags) {
    const KeyText key(name);
    TSAddNodeToTree({doc, key.Bytes(), value, flags}, TSLexDocGetNamesEntry(doc, tree, /*create*/ true));
}

void TSRemoveNameEntry(LexDoc doc, KRAtom tree, const EStr *name, KRBool updateLimits, std::uint32_t flags) {
    const LexObj root = TSLexDocGetNamesEntry(doc, tree, /*create*/ false);
    if (!IsDict(root)) return;
    if (!(flags & (TSNameRemove | TSNameRemoveDestroy))) flags |= TSNameRemove;
    const KeyText key(name);
    const bool touchedEdge = TSAddNodeToTree({doc, key.Bytes(), LexNullObj, flags}, root);
    if (updateLimits && touchedEdge) TSUpdateNodeLimits(root);
}

LexObj TSFindNameEntry(LexDoc doc, KRAtom tree, const EStr *name) {
    const LexObj root = TSLexDocGetNamesEntry(doc, tree, /*create*/ false);
    if (!IsDict(root)) return LexNullObj;
    const KeyText key(name);
    return TSFindLeafInTree(root, key.Bytes());
}

LexObj TSFindNameEntryByObj(LexDoc doc, KRAtom tree, LexObj value) {
    ObjSearch search{value, LexNullObj};
    TSEnumNameTree(doc, tree, &CompareValue, &search);
    return search.key;
}

KRBool TSEnumNameTree(LexDoc doc, KRAtom tree, Forms::NameEntryProc proc, void *data) {
    return TSEnumLeavesInTree(TSLexDocGetNamesEntry(doc, tree, /*create*/ false), proc, data);
}

void TSRegenerateNameTree(LexDoc doc, KRAtom tree, std::int32_t branching) {
    if (branching < 2) KRRaise(KRErrBadParam);
    const LexObj oldRoot = TSLexDocGetNamesEntry(doc, tree, /*create*/ false);
    const std::int32_t count = TSCountLeavesInTree(oldRoot);
    if (count == 0) return;
    const LexObj root = TSGenerateNewNodes(doc, count, branching);
    TSCopyTreeLeaves(oldRoot, root);
    TSUpdateNodeLimits(root);
    TSRemoveNameTree(doc, tree);
    TSUpdateCatalogNamesEntry(doc, tree, root);
}
