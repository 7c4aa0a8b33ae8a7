// Holds the one record of platform procedures.
// SPDX-License-Identifier: MIT
#include "ViewPlatform.h"

namespace jackdaw {

ViewPlatform &Platform() {
    static ViewPlatform platform;
    return platform;
}

} // namespace jackdaw
