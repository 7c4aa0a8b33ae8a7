// What is noted of long arrays of field dictionaries; FieldArray.h has the rules that keep it true.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "LexHFT.h"

/** The elements of a `Fields` array by full name, for a form that is being assembled. */
struct FieldArrayNames {
    struct Element {
        LexObj obj;
        /** Grows along the array. */
        std::int64_t sequence;
    };
    std::int64_t nextSequence = 0;
    std::unordered_map<std::string, std::vector<Element>> byName;
};

/** An index of one array. */
struct FieldArrayMembers {
    struct Member {
        LexObj obj;
        std::int32_t count;
    };
    explicit FieldArrayMembers(LexObj array) : array(array) {}
    LexObj array;
    std::int32_t length = 0;
    LexObj last = LexNullObj;
    /** Elements by object number, with how often each stands in the array; LexObjEqual decides. */
    std::unordered_multimap<std::int32_t, Member> members;
    /** Made when asked for. */
    std::unique_ptr<FieldArrayNames> names;
};

/** A document's indexes: of the few long arrays used last, newest first. */
using FieldArrayIndex = std::vector<FieldArrayMembers>;
