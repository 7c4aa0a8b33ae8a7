// Where a page stands on a device: the transformation that its crop box, its rotation and a scale make.
//
// Page space is that of the page's content, y upward. Device space starts at the upper left corner of the page as it is
// looked at, y downward, `scale` units to the point.
// SPDX-License-Identifier: MIT
#pragma once

#include "KRTypes.h"

namespace jackdaw {

/** x' = a x + c y + e, y' = b x + d y + f. */
struct Affine {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
};

struct DevicePoint {
    double x, y;
};

/** Upright, left <= right and top <= bottom. */
struct DeviceRect {
    double left, top, right, bottom;
};

struct PageGeometry {
    Affine toDevice;
    Affine toPage;
    /** Of the upright page, in device units. */
    double width, height;
};

/** Of a crop box in points (as DMPageGetBBox gives it) and a rotation of 0, 90, 180 or 270. `scale` is above 0. */
PageGeometry MakePageGeometry(const KRFixedRect &cropBox, int rotate, double scale);
PageGeometry GeometryOfPage(DMPage page, double scale);

DevicePoint Apply(const Affine &matrix, double x, double y);
DeviceRect PageRectToDevice(const PageGeometry &geometry, const KRFixedRect &rect);
/** In PDF sense: bottom <= top. */
KRFixedRect DeviceRectToPage(const PageGeometry &geometry, const DeviceRect &rect);

} // namespace jackdaw
