// File specifications: a string, or a dictionary with `UF`, `F`, a platform's key and `FS`.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "DocModelHFT.h"
#include "LexHFT.h"

namespace jackdaw {

inline LexObj FileSpecLex(DMFileSpec spec) {
    return {spec.node, spec.slot};
}
inline DMFileSpec FileSpecFromLex(LexObj obj) {
    return {obj.node, obj.slot};
}

bool FileSpecIsValid(DMFileSpec spec);
/** The file system that `FS` names, the default one without `FS`; null when none is registered under the name. */
KRFileSys FileSpecFileSys(DMFileSpec spec);
/** Path relative to the folder of `base` (null: the working folder); null when it leads nowhere. The caller releases
 * it. */
KRPathName AcquireFileSpecPath(DMFileSpec spec, KRPathName base);
/**
 * The device-independent text, in host encoding: `/` between the parts. It is the text as it stands in the file; with a
 * `base` a relative one is put behind the folder of the base.
 */
std::string FileSpecDIPath(DMFileSpec spec, KRPathName base);

} // namespace jackdaw
