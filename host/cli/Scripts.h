// Scripts of a form that no engine runs, so that a user hears of figures that may be out of date.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "FormsHFT.h"
#include "LexHFT.h"

namespace jackdaw::cli {

class UnrunScripts {
public:
    /** Counts what would have looked at, formatted or checked the new value of this field. */
    void AddField(DMField *field);
    /** With what would have calculated other fields; one warning, when there is any. */
    void Warn(LexDoc doc) const;

private:
    bool anyField_ = false;
    std::size_t scripts_ = 0;
};

} // namespace jackdaw::cli
