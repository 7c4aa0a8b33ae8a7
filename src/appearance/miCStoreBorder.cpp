// Borders: flat, dashed, raised, sunken and underlined, around rectangles and around circles.
// SPDX-License-Identifier: MIT
#include "appearance/miCStore.h"
#include "appearance/miCStoreParts.h"

#include "KernelSupportHFT.h"
#include "objects/ColorUtl.h"

namespace {

constexpr DMColorValue s_black{TSColorGray, {0, 0, 0, 0}};
constexpr DMColorValue s_white{TSColorGray, {KRFixedOne, 0, 0, 0}};
constexpr DMColorValue s_lightGray{TSColorGray, {0xC0C0, 0, 0, 0}};
constexpr DMColorValue s_darkGray{TSColorGray, {0x8080, 0, 0, 0}};
constexpr DMColorValue s_transparent{TSColorTransparent, {0, 0, 0, 0}};
/** How much darker a pressed background is. */
constexpr KRFixed s_pressedStep = 0x4040;

bool IsSeen(const DMColorValue *color) {
    return color->space >= 0;
}

DMColorValue DarkerRGB(const DMColorValue *back) {
    DMColorValue pressed = *back;
    TSDMColorValueConvert(&pressed, TSColorRGB);
    pressed.space = TSColorRGB;
    for (int i = 0; i < 3; ++i) {
        const KRFixed value = std::max(TSFixedSub(pressed.value[i], s_pressedStep), 0);
        pressed.value[i] = std::min(value, KRFixedOne);
    }
    return pressed;
}

/** What every drawing routine here is told. */
struct Frame {
    KRFixedRect rect;
    KRFixed width, height;
    KRFixed border;
    const DMColorValue *borderColor;
    const DMColorValue *backColor;
};

Frame FrameOf(const CStore *store, const KRFixedRect *rect, KRFixed border, const DMColorValue *borderColor,
              const DMColorValue *backColor) {
    const KRFixedRect box = rect ? *rect : store->bbox;
    // A width of 0 means no border; a line of that width would still be drawn, as thin as the device can.
    const bool hasEdge = borderColor && border > 0;
    return {box,    CStoreDistance(box.right, box.left),    CStoreDistance(box.top, box.bottom),
            border, hasEdge ? borderColor : &s_transparent, backColor ? backColor : &s_transparent};
}

void FillBack(CStore *store, const Frame &frame, KRFixed left, KRFixed bottom) {
    if (!IsSeen(frame.backColor)) return;
    CStoreSetColor(store, frame.backColor, /*fill*/ true);
    CStoreRect(store, left, bottom, frame.width, frame.height, 'f');
}

void StrokeEdge(CStore *store, const Frame &frame, bool dashed) {
    if (!IsSeen(frame.borderColor)) return;
    CStoreSetColor(store, frame.borderColor, /*fill*/ false);
    CStorePrintf(store, "%f w", frame.border);
    if (dashed) CStorePrintf(store, "[3] 0 d");
    const KRFixed half = frame.border / 2;
    CStoreRect(store, TSFixedAdd(frame.rect.left, half), TSFixedAdd(frame.rect.bottom, half),
               TSFixedSub(frame.width, frame.border), TSFixedSub(frame.height, frame.border), 's');
}

void DrawFlat(CStore *store, const Frame &frame, bool dashed) {
    FillBack(store, frame, frame.rect.left, frame.rect.bottom);
    StrokeEdge(store, frame, dashed);
}

void DrawUnderline(CStore *store, const Frame &frame) {
    FillBack(store, frame, 0, 0);
    if (!IsSeen(frame.borderColor)) return;
    CStoreSetColor(store, frame.borderColor, /*fill*/ false);
    const KRFixed y = TSFixedAdd(frame.rect.bottom, frame.border / 2);
    CStorePrintf(store, "%f w %f %f m %f %f l s", frame.border, frame.rect.left, y, frame.width, y);
}

void CStoreDrawCorner(CStore *store, const KRFixedRect &r, KRFixed b, bool topLeft) {
    const KRFixed left = TSFixedAdd(r.left, b);
    const KRFixed bottom = TSFixedAdd(r.bottom, b);
    const KRFixed right = TSFixedSub(r.right, b);
    const KRFixed top = TSFixedSub(r.top, b);
    static constexpr char s_path[] = "%f %f m %f %f l %f %f l %f %f l %f %f l %f %f l f";
    if (topLeft)
        CStorePrintf(store, s_path, r.left, r.bottom, r.left, r.top, r.right, r.top, right, top, left, top, left,
                     bottom);
    else
        CStorePrintf(store, s_path, r.right, r.top, r.right, r.bottom, r.left, r.bottom, left, bottom, right, bottom,
                     right, top);
}

void Draw3D(CStore *store, const Frame &frame, const DMColorValue *topLeft, const DMColorValue *bottomRight) {
    DrawFlat(store, frame, /*dashed*/ false);
    KRFixedRect inner = frame.rect;
    TSFixedRectInset(&inner, frame.border, frame.border);
    if (IsSeen(topLeft)) {
        CStoreSetColor(store, topLeft, /*fill*/ true);
        CStoreDrawCorner(store, inner, frame.border, /*topLeft*/ true);
    }
    if (IsSeen(bottomRight)) {
        CStoreSetColor(store, bottomRight, /*fill*/ true);
        CStoreDrawCorner(store, inner, frame.border, /*topLeft*/ false);
    }
}

/** The circle that a frame's rectangle holds. */
struct Circle {
    KRFixed x, y, radius;
};

Circle CircleOf(const Frame &frame) {
    return {TSFixedAdd(frame.rect.left, frame.width / 2), TSFixedAdd(frame.rect.bottom, frame.height / 2),
            std::min(frame.width, frame.height) / 2};
}

void FillBackCircle(CStore *store, const Frame &frame, const Circle &circle) {
    if (!IsSeen(frame.backColor)) return;
    CStoreSetColor(store, frame.backColor, /*fill*/ true);
    CStoreCircle(store, circle.x, circle.y, circle.radius, 'f');
}

void StrokeCircle(CStore *store, const Frame &frame, const Circle &circle) {
    CStoreCircle(store, circle.x, circle.y, TSFixedSub(circle.radius, frame.border / 2), 's');
}

void DrawFlatCircle(CStore *store, const Frame &frame, bool dashed) {
    const Circle circle = CircleOf(frame);
    FillBackCircle(store, frame, circle);
    if (!IsSeen(frame.borderColor)) return;
    CStoreSetColor(store, frame.borderColor, /*fill*/ false);
    CStorePrintf(store, "%f w", frame.border);
    if (dashed) CStorePrintf(store, "[3] 0 d");
    StrokeCircle(store, frame, circle);
}

// Half a rim, in a frame turned by 45 degrees.
void CStoreDrawCircularCorner(CStore *store, KRFixed x, KRFixed y, KRFixed radius, bool topLeft) {
    const KRFixed r = topLeft ? radius : TSFixedNeg(radius);
    const KRFixed k = KRFixedMul(r, CStoreCircleFactor);
    CStorePrintf(store, "q 0.7071 0.7071 -0.7071 0.7071 %f %f cm", x, y);
    CStorePrintf(store, "%f 0 m", r);
    CStorePrintf(store, "%f %f %f %f 0 %f c", r, k, k, r, r);
    CStorePrintf(store, "%f %f %f %f %f 0 c S", TSFixedNeg(k), r, TSFixedNeg(r), k, TSFixedNeg(r));
    CStorePrintf(store, "Q");
}

void Draw3DCircle(CStore *store, const Frame &frame, const DMColorValue *topLeft, const DMColorValue *bottomRight) {
    const Circle circle = CircleOf(frame);
    FillBackCircle(store, frame, circle);
    if (frame.border <= 0) return;
    CStorePrintf(store, "%f w", frame.border);
    if (IsSeen(frame.borderColor)) {
        CStoreSetColor(store, frame.borderColor, /*fill*/ false);
        StrokeCircle(store, frame, circle);
    }
    const KRFixed rim = TSFixedSub(circle.radius, KRFixedMul(frame.border, KRFixedOne + KRFixedOne / 2));
    if (IsSeen(topLeft)) {
        CStoreSetColor(store, topLeft, /*fill*/ false);
        CStoreDrawCircularCorner(store, circle.x, circle.y, rim, /*topLeft*/ true);
    }
    if (IsSeen(bottomRight)) {
        CStoreSetColor(store, bottomRight, /*fill*/ false);
        CStoreDrawCircularCorner(store, circle.x, circle.y, rim, /*topLeft*/ false);
    }
}

/** The rims of the two raised styles, and the background, which a sunken one darkens when it is down. */
struct Rims {
    const DMColorValue *topLeft;
    const DMColorValue *bottomRight;
    const DMColorValue *back;
};

Rims RimsOf(std::int32_t style, bool down, const Frame &frame, const DMColorValue *pressed) {
    const DMColorValue *back = frame.backColor;
    if (frame.border <= 0) return {&s_transparent, &s_transparent, style == TSBorderInset && down ? pressed : back};
    if (style == TSBorderBeveled) return {down ? pressed : &s_white, down ? &s_white : pressed, back};
    return {down ? &s_black : &s_darkGray, down ? &s_white : &s_lightGray, down ? pressed : back};
}

} // namespace

void CStoreDrawBorder(CStore *store, const KRFixedRect *rect, std::int32_t style, KRFixed width,
                      const DMColorValue *borderColor, const DMColorValue *backColor, bool down) {
    Frame frame = FrameOf(store, rect, width, borderColor, backColor);
    const DMColorValue pressed = IsSeen(frame.backColor) ? DarkerRGB(frame.backColor) : s_lightGray;
    switch (style) {
    case TSBorderSolid:
    case TSBorderDashed:
        if (down && IsSeen(frame.backColor)) frame.backColor = &pressed;
        DrawFlat(store, frame, style == TSBorderDashed);
        break;
    case TSBorderBeveled:
    case TSBorderInset: {
        const Rims rims = RimsOf(style, down, frame, &pressed);
        frame.backColor = rims.back;
        Draw3D(store, frame, rims.topLeft, rims.bottomRight);
        break;
    }
    case TSBorderUnderline:
        DrawUnderline(store, frame);
        break;
    default:
        break;
    }
}

// The pressed colour is made without asking whether the background is transparent: its components then are what the
// record holds.
void CStoreDrawCircularBorder(CStore *store, const KRFixedRect *rect, std::int32_t style, KRFixed width,
                              const DMColorValue *borderColor, const DMColorValue *backColor, bool down) {
    Frame frame = FrameOf(store, rect, width, borderColor, backColor);
    const DMColorValue pressed = DarkerRGB(frame.backColor);
    switch (style) {
    case TSBorderSolid:
    case TSBorderDashed:
    case TSBorderUnderline:
        if (down && style != TSBorderUnderline && IsSeen(frame.backColor)) frame.backColor = &pressed;
        DrawFlatCircle(store, frame, style == TSBorderDashed);
        break;
    case TSBorderBeveled:
    case TSBorderInset: {
        const Rims rims = RimsOf(style, down, frame, &pressed);
        frame.backColor = rims.back;
        Draw3DCircle(store, frame, rims.topLeft, rims.bottomRight);
        break;
    }
    default:
        break;
    }
}
