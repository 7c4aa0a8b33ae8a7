// Captions with icons, and the thin layout entries that widgets and other plug-ins use.
// SPDX-License-Identifier: MIT
#include "appearance/miCStore.h"
#include "appearance/miCStoreParts.h"

#include <algorithm>
#include <cstring>

#include "Common/src/miEStr.h"
#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "base/FormStr.h"
#include "objects/AnnotUtl.h"

namespace {

/** Numbers of `TP`. */
enum Layout : std::int32_t {
    CaptionOnly = 0,
    IconOnly = 1,
    CaptionBelow = 2,
    CaptionAbove = 3,
    CaptionRight = 4,
    CaptionLeft = 5,
    CaptionOver = 6
};

constexpr KRFixed s_half = 0x8000;

/** Everything that placing needs: the inside, the sizes of what goes in, and the room between them. */
struct Sizes {
    KRFixedRect inside;
    KRFixed width, height;
    KRFixed textWidth, textHeight;
    KRFixed margin;
};

struct Places {
    KRFixed iconX = 0, iconY = 0, iconWidth = 0, iconHeight = 0;
    KRFixed textX = 0, textY = 0;
};

KRFixed Centered(KRFixed start, KRFixed room, KRFixed size) {
    return TSFixedAdd(start, TSFixedSub(room, size) / 2);
}

KRFixed OfSize(std::int32_t thousandths, KRFixed size) {
    return KRFixedDiv(KRFixedMul(KRFixedFromInt(thousandths), size), KRFixedFromInt(1000));
}

/** The ink of a mark of a check box, in thousandths of the size. */
struct MarkInk {
    std::int32_t height;
    /** Against the baseline. */
    std::int32_t bottom;
};

MarkInk InkOf(char mark) {
    if (mark == '8') return {718, -14}; // cross
    if (mark == 'n') return {692, 0};   // square
    return {719, -14};                  // check, circle and others
}

KRFixed DingbatHeight(char mark, KRFixed size) {
    return OfSize(InkOf(mark).height, size);
}

// Caption and icon share a side; what the caption leaves goes to the icon, and without room there is no icon.
void ShareSide(KRFixed room, KRFixed *side, Places *places, std::uint32_t *flags) {
    if (room > 0) {
        *side = room;
        return;
    }
    places->iconWidth = places->iconHeight = 0;
    *flags = CStoreUsesFont;
}

Places Place(const Sizes &s, std::int32_t layout, std::uint32_t *flags) {
    Places p;
    const KRFixed centerX = Centered(s.inside.left, s.width, s.textWidth);
    const KRFixed centerY = Centered(s.inside.bottom, s.height, s.textHeight);
    const KRFixed captionRoom = TSFixedAdd(s.textHeight, s.margin);
    const KRFixed captionSide = TSFixedAdd(s.textWidth, s.margin);
    if (layout < CaptionOnly || layout > CaptionOver) return p;
    *flags = CStoreUsesFont | CStoreUsesXObject;
    p.iconX = s.inside.left;
    p.iconY = s.inside.bottom;
    p.iconWidth = s.width;
    p.iconHeight = s.height;
    p.textX = centerX;
    p.textY = centerY;
    switch (layout) {
    case CaptionOnly:
        *flags = CStoreUsesFont;
        p.iconX = p.iconY = p.iconWidth = p.iconHeight = 0;
        break;
    case IconOnly:
        *flags = CStoreUsesXObject;
        p.textX = p.textY = 0;
        break;
    case CaptionBelow:
        p.iconY = TSFixedAdd(s.inside.bottom, captionRoom);
        p.textY = s.inside.bottom;
        ShareSide(TSFixedSub(s.height, captionRoom), &p.iconHeight, &p, flags);
        break;
    case CaptionAbove:
        p.textY = TSFixedSub(s.inside.top, s.textHeight);
        ShareSide(TSFixedSub(s.height, captionRoom), &p.iconHeight, &p, flags);
        break;
    case CaptionRight:
        p.textX = TSFixedSub(s.inside.right, s.textWidth);
        ShareSide(TSFixedSub(s.width, captionSide), &p.iconWidth, &p, flags);
        break;
    case CaptionLeft:
        p.iconX = TSFixedAdd(s.inside.left, captionSide);
        p.textX = s.inside.left;
        ShareSide(TSFixedSub(s.width, captionSide), &p.iconWidth, &p, flags);
        break;
    default:
        break;
    }
    return p;
}

void DrawIcon(CStore *store, const TSFit *fit, const Places &p, const KRFixedRect &iconBox) {
    KRFixedRect place;
    TSFixedRectSet(&place, p.iconX, p.iconY, TSFixedAdd(p.iconX, p.iconWidth), TSFixedAdd(p.iconY, p.iconHeight));
    KRFixedMatrix m;
    GetFitMatrix(fit, &place, &iconBox, &m);
    CStorePrintf(store, "q");
    CStorePrintf(store, "%f %f %f %f re W n", p.iconX, p.iconY, p.iconWidth, p.iconHeight);
    CStorePrintf(store, "%f %f %f %f %f %f cm /FRM Do", m.a, m.b, m.c, m.d, m.e, m.f);
    CStorePrintf(store, "Q");
}

void DrawCaption(CStore *store, const Places &p, const TextAppearance &look, const char *text) {
    CStorePrintf(store, "BT %c", CStoreLookText(look).c_str());
    CStorePrintf(store, "1 0 0 1 %f %f Tm", p.textX, TSFixedSub(p.textY, store->metrics.descent));
    CStoreShowText(store, text);
    CStorePrintf(store, "ET");
}

CStoreMetrics CaptionMetrics(const TextAppearance &look, const char *text, bool isDingbat) {
    CStoreMetrics metrics;
    CStoreGetMetrics(look.baseFont, look.size, &metrics);
    // A mark stands on its own lower edge, not on that of the font's box.
    if (isDingbat) metrics.descent = OfSize(InkOf(text[0]).bottom, look.size);
    return metrics;
}

// The largest size at which a mark fits its box.
KRFixed MarkSize(const CStore *store, KRFixed margin, KRAtom font, const char *mark) {
    constexpr KRFixed probe = KRFixedFromInt(100);
    CStoreMetrics metrics;
    CStoreGetMetrics(font, probe, &metrics);
    const KRFixed margins = CStoreTimes(margin, 4);
    const KRFixed width = CStoreStringWidth(&metrics, mark), height = DingbatHeight(mark[0], probe);
    const KRFixed roomX = TSFixedSub(CStoreWidth(store), margins), roomY = TSFixedSub(CStoreHeight(store), margins);
    if (width <= 0 || roomX <= 0 || roomY <= 0) return CStoreMinSize;
    return KRFixedMul(probe, std::min(KRFixedDiv(roomX, width), KRFixedDiv(roomY, height)));
}

Sizes Measure(const CStore *store, KRFixed margin, const char *text, bool isDingbat) {
    Sizes s;
    const CStoreMetrics &metrics = store->metrics;
    s.textWidth = CStoreStringWidth(&metrics, text);
    s.textHeight = isDingbat ? DingbatHeight(text[0], metrics.size) : CStoreGetFontHeight(&metrics);
    s.inside = store->bbox;
    TSFixedRectInset(&s.inside, CStoreTimes(margin, 2), CStoreTimes(margin, 2));
    s.width = CStoreDistance(s.inside.right, s.inside.left);
    s.height = CStoreDistance(s.inside.top, s.inside.bottom);
    s.margin = margin;
    return s;
}

/** One side of a fit: its scale, and the slack that the alignment shares out. */
struct Side {
    KRFixed scale;
    KRFixed slack;
};

Side FitSide(bool scaled, KRFixed dest, KRFixed src) {
    if (scaled) return {KRFixedDiv(dest, src), 0};
    return {KRFixedOne, TSFixedSub(dest, src)};
}

bool MayScale(KRAtom when, KRFixed dest, KRFixed src) {
    if (src < dest) return when == Always_K || when == TooSmall_K;
    if (src > dest) return when == Always_K || when == TooBig_K;
    return false;
}

// Proportional fits scale both sides or none.
void AgreeOnScaling(KRAtom when, KRFixed dw, KRFixed dh, KRFixed sw, KRFixed sh, bool *scaleX, bool *scaleY) {
    const bool oneTooBig = (dw < sw && sh <= dh) || (dh < sh && sw <= dw);
    if (oneTooBig) *scaleX = *scaleY = when == Always_K || when == TooBig_K;
    const bool oneExact = (sw == dw && sh < dh) || (sh == dh && sw < dw);
    if (oneExact) *scaleX = *scaleY = false;
}

char *WithoutLineFeeds(char *text) {
    if (miIsUCS(text))
        miReplaceStrEx(text, text, "\0\n", 2, nullptr, 0);
    else
        miReplaceStrEx(text, text, "\n", 1, nullptr, 0);
    return text;
}

} // namespace

void GetFitMatrix(const TSFit *fit, const KRFixedRect *dest, const KRFixedRect *src, KRFixedMatrix *matrix) {
    const KRFixed dw = CStoreDistance(dest->right, dest->left);
    const KRFixed dh = CStoreDistance(dest->top, dest->bottom);
    const KRFixed sw = CStoreDistance(src->right, src->left);
    const KRFixed sh = CStoreDistance(src->top, src->bottom);
    if (dw == sw && dh == sh) {
        *matrix = {
            KRFixedOne, 0, 0, KRFixedOne, TSFixedSub(dest->left, src->left), TSFixedSub(dest->bottom, src->bottom)};
        return;
    }
    bool scaleX = MayScale(fit->when, dw, sw);
    bool scaleY = MayScale(fit->when, dh, sh);
    const bool proportional = fit->how == Proportional_K;
    if (proportional) AgreeOnScaling(fit->when, dw, dh, sw, sh, &scaleX, &scaleY);
    Side x = FitSide(scaleX, dw, sw);
    Side y = FitSide(scaleY, dh, sh);
    if (proportional && scaleX) {
        const KRFixed byWidth = KRFixedDiv(dw, sw);
        const KRFixed byHeight = KRFixedDiv(dh, sh);
        const KRFixed scale = std::min(byWidth, byHeight);
        x = {scale, byWidth <= byHeight ? 0 : TSFixedSub(dw, KRFixedMul(sw, scale))};
        y = {scale, byWidth <= byHeight ? TSFixedSub(dh, KRFixedMul(sh, scale)) : 0};
    }
    const KRFixed e =
        TSFixedAdd(TSFixedSub(dest->left, KRFixedMul(x.scale, src->left)), KRFixedMul(fit->alignX, x.slack));
    const KRFixed f =
        TSFixedAdd(TSFixedSub(dest->bottom, KRFixedMul(y.scale, src->bottom)), KRFixedMul(fit->alignY, y.slack));
    *matrix = {x.scale, 0, 0, y.scale, e, f};
}

bool CStoreLayoutIconText(CStore *store, const TSFit *fit, KRFixed margin, std::int32_t layout, LexObj icon,
                          const TextAppearance *look, const char *text, bool isDingbat) {
    const bool hasIcon = !IsNull(icon);
    const bool hasText = text && *text && !(miIsUCS(text) && miUCSUnit(text + 2) == 0);
    if (!hasIcon && (!hasText || layout == IconOnly)) return true;
    if (hasIcon && !hasText && layout == CaptionOnly) return true;

    const char *caption = hasText ? text : "";
    TextAppearance own = *look;
    if (isDingbat && *caption) {
        const KRFixed largest = MarkSize(store, margin, own.baseFont, caption);
        own.size = own.size == 0 ? largest : std::min(own.size, largest);
    }
    if (own.size == 0)
        own.size = CStoreFittingSize(store, margin, own, /*multiLine*/ false, CStoreNoLimit, CStoreNoLimit, caption);
    store->metrics = CaptionMetrics(own, caption, isDingbat);
    const Sizes sizes = Measure(store, margin, caption, isDingbat);
    KRFixedRect iconBox{};
    if (hasIcon) {
        TSDMFormGetNormalizedBBox(icon, &iconBox);
        store->xobject = icon;
    }
    const Places places = Place(sizes, layout, &store->flags);
    if ((store->flags & CStoreUsesXObject) && hasIcon) DrawIcon(store, fit, places, iconBox);
    if ((store->flags & CStoreUsesFont) && text && own.fillColor.space >= 0) DrawCaption(store, places, own, caption);
    return places.textX >= TSFixedSub(sizes.inside.left, margin) &&
           places.textY <= TSFixedAdd(sizes.inside.top, margin);
}

KRFixed CStoreBorderMargin(const TSBorder *border) {
    const bool doubled = border->style == TSBorderBeveled || border->style == TSBorderInset;
    return CStoreTimes(KRFixedFromInt(border->width), doubled ? 2 : 1);
}

KRFixedRect CStoreInsideRect(const CStore *store, KRFixed margin) {
    const bool crossed = store->rotation == 90 || store->rotation == 270;
    const KRFixed width = crossed ? CStoreHeight(store) : CStoreWidth(store);
    const KRFixed height = crossed ? CStoreWidth(store) : CStoreHeight(store);
    KRFixedRect inside;
    TSFixedRectSet(&inside, margin, margin, TSFixedSub(width, margin), TSFixedSub(height, margin));
    return inside;
}

CStore *TSLayoutNew(const KRFixedRect *rect, std::uint16_t rotation) {
    return CStoreNew(rect, rotation);
}

void TSLayoutDelete(CStore *store) {
    CStoreDelete(store);
}

LexObj TSLayoutCreateStream(LexDoc doc, CStore *store) {
    return store ? CStoreSave(doc, store) : LexNullObj;
}

void TSLayoutBorder(CStore *store, const TSBorder *border, const DMColorValue *borderColor,
                    const DMColorValue *backColor, bool down) {
    if (!store) return;
    CStoreDrawBorder(store, nullptr, border->style, KRFixedFromInt(border->width), borderColor, backColor, down);
}

void TSLayoutText(CStore *store, bool multiLine, bool wrap, const TSBorder *border, TextAppearance *look, char *text) {
    TSLayoutTextEx(store, multiLine, wrap, border, look, text, CStoreNoLimit, CStoreNoLimit);
}

void TSLayoutTextEx(CStore *store, bool multiLine, bool wrap, const TSBorder *border, TextAppearance *look, char *text,
                    KRFixed minSize, KRFixed maxSize) {
    if (!store || !text) return;
    const KRFixed margin = CStoreBorderMargin(border);
    const KRFixedRect inside = CStoreInsideRect(store, margin);
    CStoreStartRectClip(store, &inside);
    if (multiLine)
        CStoreFlowTextEx(store, wrap, margin, look, text, minSize, maxSize);
    else
        CStoreSimpleTextEx(store, margin, look, WithoutLineFeeds(text), minSize, maxSize, /*calcSize*/ true);
    CStoreEndRectClip(store);
}

void TSLayoutIconText(CStore *store, std::int32_t layout, LexObj icon, const TSBorder *border, TextAppearance *look,
                      char *text) {
    if (!store) return;
    const KRFixed margin = CStoreBorderMargin(border);
    const KRFixedRect inside = CStoreInsideRect(store, margin);
    const TSFit fit{Always_K, Proportional_K, s_half, s_half};
    CStoreStartRectClip(store, &inside);
    CStoreLayoutIconText(store, &fit, margin, layout, icon, look, text, /*isDingbat*/ false);
    CStoreEndRectClip(store);
}
