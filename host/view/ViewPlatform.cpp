// Holds the one record of platform procedures.
// SPDX-License-Identifier: MIT
#include "view/ViewPlatform.h"

namespace jackdaw {

ViewPlatform &Platform() {
    static ViewPlatform s_platform;
    return s_platform;
}

} // namespace jackdaw
