// Geometry that the sources of the page view share.
// SPDX-License-Identifier: MIT
#pragma once

#include "view/PageView.h"

namespace jackdaw {

/** Geometry of a page by its number, its corner at the origin. */
PageGeometry PlacedGeometry(SCPageView view, std::int32_t page, double scale);

} // namespace jackdaw
