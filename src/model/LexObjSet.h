// A set of indirect objects of one document, for walks that must not go through an object twice.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "LexHFT.h"

/** Object numbers find candidates; LexObjEqual decides. */
class LexObjSet {
public:
    bool Has(LexObj obj) const {
        const auto [first, last] = objects.equal_range(LexObjGetID(obj));
        for (auto it = first; it != last; ++it) {
            if (LexObjEqual(it->second, obj)) return true;
        }
        return false;
    }
    /** True when the object is new to the set. */
    bool Add(LexObj obj) {
        if (Has(obj)) return false;
        objects.emplace(LexObjGetID(obj), obj);
        return true;
    }

    std::size_t Size() const {
        return objects.size();
    }
    void Clear() {
        objects.clear();
    }
    /** In no order. */
    auto begin() const {
        return objects.begin();
    }
    auto end() const {
        return objects.end();
    }

private:
    std::unordered_multimap<std::int32_t, LexObj> objects;
};
