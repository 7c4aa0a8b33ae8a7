// The handler of list boxes.
// SPDX-License-Identifier: MIT
#include "widgets/miWLstBx.h"

#include <algorithm>

#include "Common/unix/mdMessages.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "objects/ColorUtl.h"
#include "widgets/WidgetHandlers.h"
#include "widgets/miWShownText.h"
#include "widgets/miWValueFace.h"

namespace {

SCWidgetHandler s_handler;
constexpr KRFixed s_undefinedGray = 65535;

KRAtom WListBoxGetType(SCWidgetHandler *) {
    return ListBox_K;
}

void WListBoxGetName(SCWidgetHandler *, char *buffer, std::int32_t size) {
    mdGetString(Msg::widgetListBox, buffer, static_cast<std::uint16_t>(size));
}

// The first line on show, moved so that the selection is in view. A top beyond the end shows the last lines.
std::int32_t TopWithSelection(std::int32_t top, std::int32_t selected, std::int32_t lines, std::int32_t count) {
    if (top >= count) top = count - lines;
    top = std::max(top, 0);
    if (selected < 0) return top;
    const std::int32_t last = std::min(top + lines - 1, count - 1);
    if (selected < top) return selected;
    if (selected > last) return std::max(std::min(count - lines, selected), 0);
    return top;
}

/** The lines of a list being drawn. */
struct ListLines {
    CStoreBlock *block;
    const TSWidgetData *data;
    LexObj options;
    /** Indexes in `options`, one a line. */
    std::vector<std::int32_t> choices;
    std::int32_t top;
    std::int32_t lines;
    /** The selected lines, in order. */
    std::vector<std::int32_t> selected;
};

bool IsSelected(const ListLines &list, std::int32_t line) {
    return std::binary_search(list.selected.begin(), list.selected.end(), line);
}

void DrawLine(WValueFace &face, const ListLines &list, std::int32_t index) {
    LexObj element = LexArrayGet(list.options, list.choices[static_cast<std::size_t>(index)]);
    const EStrPtr name(EStrNewImpl(TSOptionGetShownText(element).c_str(), EStrHost));
    const EStrPtr text = TSTextForFont(name.get(), face.look.baseFont, face.field);
    if (!IsSelected(list, index)) {
        CStoreBlockLine(list.block, EStrGetBytes(text.get()));
        return;
    }
    DMColorValue color;
    mdListBoxGetHighlightColor(list.data, &color, /*foreground*/ true);
    CStoreSetColor(face.store.get(), &color, /*fill*/ true);
    CStoreBlockLine(list.block, EStrGetBytes(text.get()));
    CStoreSetColor(face.store.get(), &face.look.fillColor, /*fill*/ true);
}

void DrawLines(WValueFace &face, const ListLines &list) {
    const auto count = static_cast<std::int32_t>(list.choices.size());
    const std::int32_t end = std::min(count, list.top + list.lines);
    DMColorValue bar;
    mdListBoxGetHighlightColor(list.data, &bar, /*foreground*/ false);
    for (std::int32_t line = list.top; line < end; ++line) {
        if (IsSelected(list, line)) CStoreBlockHighlightLine(list.block, line - list.top, &bar);
    }
    CStoreBlockLine(list.block, nullptr);
    for (std::int32_t index = list.top; index < end; ++index) DrawLine(face, list, index);
}

// Only the lines on show are read: a list may have a hundred thousand.
ListLines ListOf(DMField *field, const TSWidgetData *data) {
    ListLines list{};
    list.data = data;
    list.options = TSDMFieldGetObj(field, options_K);
    list.choices = TSOptionsGetChoices(list.options);
    for (const std::int32_t option : DMFieldGetOptionIndexes(field)) {
        const auto found = std::lower_bound(list.choices.begin(), list.choices.end(), option);
        if (found != list.choices.end() && *found == option)
            list.selected.push_back(static_cast<std::int32_t>(found - list.choices.begin()));
    }
    return list;
}

void BringIntoView(DMField *field, ListLines &list) {
    const std::int32_t present = TSDMFieldGetTopIndex(field);
    const auto count = static_cast<std::int32_t>(list.choices.size());
    list.lines = CStoreBlockGetNumLines(list.block);
    // The block counts the line that shows only in part; a selection there would not be in view.
    const std::int32_t first = list.selected.empty() ? -1 : list.selected.front();
    list.top = TopWithSelection(present, first, std::max(list.lines - 1, 1), count);
    if (list.top != present) TSDMFieldSetTopIndex(field, static_cast<std::int16_t>(std::min(list.top, INT16_MAX + 0)));
}

void DrawList(WValueFace &face, const TSWidgetData *data) {
    ListLines list = ListOf(face.field, data);
    list.block = CStoreBlockStart(face.store.get(), face.margin, &face.look);
    if (!list.block) return;
    const KRErrorCode code = Protect([&] {
        BringIntoView(face.field, list);
        DrawLines(face, list);
    });
    CStoreBlockEnd(list.block);
    RaiseIf(code);
}

void WListBoxWriteAppearance(SCWidgetHandler *, DMAnnot annot, KRAtom, EStr *, KRBool) {
    DMField *field = TSDMAnnotGetField(annot);
    if (!TSDMFieldIsValid(field)) return;
    WValueFace face = WValueFaceNew(annot, field);
    TSWidgetData colors{};
    colors.textColor = face.look.fillColor;
    TSDMWidgetGetAreaColors(annot, nullptr, &colors.backColor);
    WValueFaceDraw(face, [&] { DrawList(face, &colors); });
    WValueFaceSet(face);
}

} // namespace

void mdListBoxGetHighlightColor(const TSWidgetData *data, DMColorValue *color, bool foreground) {
    *color = foreground ? data->backColor : data->textColor;
    if (color->space < TSColorGray || color->space > TSColorCMYK)
        TSDMColorValueSet(color, TSColorGray, s_undefinedGray);
}

TSWidgetData *WListBox_AcquireData(DMAnnot annot) {
    return WChoiceAcquireData(&s_handler, annot);
}

void WListBox_WriteData(DMAnnot annot, TSWidgetData *data) {
    WChoiceWriteData(&s_handler, annot, data);
}

void WListBox_ReleaseData(TSWidgetData *data) {
    WChoiceReleaseData(&s_handler, data);
}

void WListBox_Init() {
    s_handler.GetType = PICallback(gExtensionID, &WListBoxGetType);
    s_handler.GetName = PICallback(gExtensionID, &WListBoxGetName);
    s_handler.WriteAppearance = PICallback(gExtensionID, &WListBoxWriteAppearance);
    WChoiceInit(&s_handler);
}
