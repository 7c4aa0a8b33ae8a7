// Taking fields away: the records and their dictionaries' places in the tree.
// SPDX-License-Identifier: MIT
#pragma once

#include <unordered_map>
#include <vector>

#include "KRErrors.h"
#include "LexHFT.h"
#include "model/LexObjSet.h"

struct DMField;

/**
 * Frees a record and takes its dictionary out of the tree: out of `Fields`, or out of the parent's `Kids`, and then a
 * parent left without kids goes as well, up to the root. TSFieldDidJoin tells of a terminal field that is alone under
 * its name from now on. Children of the field lose their parent. Null allowed.
 */
void TSDMFieldUndefine(DMField *field);

/**
 * TSDMFieldUndefine for many fields of one document. The dictionaries leave their arrays together in Finish, so that a
 * long array is gone through once and not once for each; until then they still stand there.
 */
class FieldRemoval {
public:
    FieldRemoval() = default;
    /** Finishes, what is raised then being lost. */
    ~FieldRemoval();
    FieldRemoval(const FieldRemoval &) = delete;
    FieldRemoval &operator=(const FieldRemoval &) = delete;

    /** Null allowed. Raises nothing: what observers raised comes out of Finish. */
    void Undefine(DMField *field);
    void Finish();

private:
    struct Leaving {
        LexObj owner;
        KRAtom key;
        LexObjSet dicts;
    };
    void NoteLeaving(LexObj owner, KRAtom key, LexObj dict);
    void LeaveArray(const Leaving &leaving);

    std::vector<Leaving> leaving_;
    /** Places in `leaving_` by the owner's object number. */
    std::unordered_multimap<std::int32_t, std::size_t> byOwner_;
    LexDoc doc_ = nullptr;
    KRErrorCode kept_ = KRErrNone;
};
