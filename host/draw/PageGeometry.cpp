// The four upright placements of a page, and their use on points and rectangles.
// SPDX-License-Identifier: MIT
#include "draw/PageGeometry.h"

#include <algorithm>

#include "doc/Pages.h"
#include "kernel/Fixed.h"

namespace jackdaw {

namespace {

/** Of a matrix that turns by right angles and scales: its determinant is never 0. */
Affine inverse(const Affine &m) {
    const double det = m.a * m.d - m.b * m.c;
    Affine r;
    r.a = m.d / det;
    r.b = -m.b / det;
    r.c = -m.c / det;
    r.d = m.a / det;
    r.e = -(r.a * m.e + r.c * m.f);
    r.f = -(r.b * m.e + r.d * m.f);
    return r;
}

DeviceRect around(DevicePoint p, DevicePoint q) {
    return {std::min(p.x, q.x), std::min(p.y, q.y), std::max(p.x, q.x), std::max(p.y, q.y)};
}

} // namespace

PageGeometry MakePageGeometry(const KRFixedRect &cropBox, int rotate, double scale) {
    const double left = FixedToDouble(std::min(cropBox.left, cropBox.right));
    const double right = FixedToDouble(std::max(cropBox.left, cropBox.right));
    const double bottom = FixedToDouble(std::min(cropBox.bottom, cropBox.top));
    const double top = FixedToDouble(std::max(cropBox.bottom, cropBox.top));
    const double s = scale;
    PageGeometry g;
    switch (rotate) {
    case 90:
        g.toDevice = {0, s, s, 0, -bottom * s, -left * s};
        break;
    case 180:
        g.toDevice = {-s, 0, 0, s, right * s, -bottom * s};
        break;
    case 270:
        g.toDevice = {0, -s, -s, 0, top * s, right * s};
        break;
    default:
        g.toDevice = {s, 0, 0, -s, -left * s, top * s};
        break;
    }
    const bool sideways = rotate == 90 || rotate == 270;
    g.width = (sideways ? top - bottom : right - left) * s;
    g.height = (sideways ? right - left : top - bottom) * s;
    g.toPage = inverse(g.toDevice);
    return g;
}

PageGeometry GeometryOfPage(DMPage page, double scale) {
    return MakePageGeometry(PageCropBox(page), PageRotate(page), scale);
}

DevicePoint Apply(const Affine &m, double x, double y) {
    return {m.a * x + m.c * y + m.e, m.b * x + m.d * y + m.f};
}

DeviceRect PageRectToDevice(const PageGeometry &geometry, const KRFixedRect &rect) {
    return around(Apply(geometry.toDevice, FixedToDouble(rect.left), FixedToDouble(rect.bottom)),
                  Apply(geometry.toDevice, FixedToDouble(rect.right), FixedToDouble(rect.top)));
}

KRFixedRect DeviceRectToPage(const PageGeometry &geometry, const DeviceRect &rect) {
    const DeviceRect page =
        around(Apply(geometry.toPage, rect.left, rect.top), Apply(geometry.toPage, rect.right, rect.bottom));
    KRFixedRect result;
    result.left = FixedFromDouble(page.left);
    result.right = FixedFromDouble(page.right);
    // Page space grows upward: what `around` calls the bottom is the greater.
    result.bottom = FixedFromDouble(page.top);
    result.top = FixedFromDouble(page.bottom);
    return result;
}

} // namespace jackdaw
