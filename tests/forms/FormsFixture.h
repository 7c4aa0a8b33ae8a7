// The form model with the built-in widget handlers, and how tests read the streams that come out of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "KernelSupportHFT.h"
#include "appearance/miCStore.h"
#include "appearance/miCStoreParts.h"
#include "objects/AnnotUtl.h"
#include "objects/FixedUtl.h"
#include "objects/LexUtil.h"
#include "objects/TextLook.h"
#include "tests/forms/ModelFixture.h"
#include "widgets/WidgetHandlers.h"

/** Other tests put handlers of their own in front; these come back for each test. */
class BuiltInWidgets : public testing::Test {
protected:
    void SetUp() override {
        StartModel();
        static const std::vector<SCWidgetHandler *> s_handlers = [] {
            TSSCAppInstallBuiltInWidgetHandlers();
            std::vector<SCWidgetHandler *> handlers;
            for (const KRAtom type : {Text_K, ComboBox_K, ListBox_K, Button_K, RadioButton_K, CheckBox_K, Sig_K})
                handlers.push_back(TSSCAppGetWidgetHandlerByName(type));
            return handlers;
        }();
        for (SCWidgetHandler *handler : s_handlers) TSSCAppRegisterWidgetHandler(handler);
    }
};

using StorePtr = std::unique_ptr<CStore, CStoreDeleter>;

constexpr KRFixed Pt(double points) {
    return static_cast<KRFixed>(points * KRFixedOne);
}

inline KRFixedRect Box(double left, double bottom, double right, double top) {
    return {.left = Pt(left), .top = Pt(top), .right = Pt(right), .bottom = Pt(bottom)};
}

/** Left, bottom, right, top. */
inline std::string RectText(const KRFixedRect &rect) {
    std::string text;
    for (const KRFixed value : {rect.left, rect.bottom, rect.right, rect.top}) {
        char number[32];
        KRFixedToCString(value, number, sizeof number, /*precision*/ 2);
        text += (text.empty() ? "" : " ") + std::string(number);
    }
    return text;
}

inline StorePtr NewStore(double width, double height, std::uint16_t rotation = 0) {
    const KRFixedRect rect = Box(0, 0, width, height);
    return StorePtr(CStoreNew(&rect, rotation));
}

inline std::string TextOf(const CStore *store) {
    return store->text ? store->text : "";
}

/** Helvetica in black. */
inline TextAppearance LookOf(double size) {
    TextAppearance look = TextAppearanceDefault();
    look.size = Pt(size);
    look.fontResource = Helv_K;
    return look;
}

/** Marked UCS-2 of ASCII text and of the units that follow it, ended by a zero pair. */
inline std::string UCS2(const std::string &ascii, const std::vector<int> &units = {}) {
    std::string text = "\xFE\xFF";
    for (const char c : ascii) text += {'\0', c};
    for (const int unit : units) text += {static_cast<char>(unit >> 8), static_cast<char>(unit & 0xFF)};
    return text + std::string(2, '\0');
}

inline DMAnnot AnnotOf(const TestDoc &doc, const char *field) {
    return TSDMFieldGetDMAnnot(FieldOf(doc, field));
}

inline LexObj FaceOf(DMAnnot annot, KRAtom mode, const char *state = nullptr) {
    return TSDMAnnotGetAppearance(annot, mode, state ? Atom(state) : KRAtomNull);
}

inline std::string FaceText(DMAnnot annot, KRAtom mode = FaceNormal_K, const char *state = nullptr) {
    return Data(FaceOf(annot, mode, state));
}

inline std::string RectOf(LexObj obj, KRAtom key) {
    KRFixedRect rect;
    TSLexGetRect(obj, key, &rect);
    return RectText(rect);
}

/** Sets the value, or writes the appearance anew when it is the value already. */
inline void Show(const TestDoc &doc, const char *field, const std::string &value) {
    TSDMFieldSetValue(FieldOf(doc, field), Str(doc, value));
    TSDMFieldUpdateAppearance(FieldOf(doc, field));
}

/** A form XObject with this text. */
inline LexObj NewForm(const TestDoc &doc, const std::string &text, LexObj attributes = LexNullObj) {
    KRStm source = KRMemStmOpen(text.data(), static_cast<std::int64_t>(text.size()));
    const LexObj stream =
        LexNewStream(doc.lex, true, source, 0, true, attributes, LexNullObj, static_cast<std::int32_t>(text.size()));
    KRStmClose(source);
    LexDictPut(LexStreamDict(stream), Subtype_K, Name(doc, "Form"));
    return stream;
}
