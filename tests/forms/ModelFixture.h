// The form model brought up once for in-process tests, with a handler that notes what it is asked to draw.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Common/src/miEStr.h"
#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "life/DMFieldLife.h"
#include "life/LexFieldHooks.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/WidgetReg.h"
#include "objects/FontMgr.h"
#include "objects/Tessella.h"
#include "tests/support/HostFixture.h"
#include "tests/support/Listener.h"
#include "tests/support/Objects.h"

/** Atoms, servers, hooks: what start-up does for the model. */
inline void StartModel() {
    static const bool s_started = [] {
        TessellaKRAtoms();
        if (!TessellaNotificationServer) CreateTessellaNotificationServer();
        InitProtoField();
        FontMgrInit();
        NameHashInit();
        return true;
    }();
    (void)s_started;
}

/** One call of a handler's WriteAppearance. */
struct Drawn {
    std::string field;
    KRAtom state;
    std::string text;
    bool forced;
};

inline std::vector<Drawn> &DrawnLog() {
    static std::vector<Drawn> s_log;
    return s_log;
}

inline void NoteDrawing(SCWidgetHandler *, DMAnnot annot, KRAtom state, EStr *value, KRBool forced) {
    const char *name = TSDMFieldGetName(TSDMAnnotGetField(annot));
    DrawnLog().push_back({name ? name : "", state, EStrGetBytes(value) ? EStrGetBytes(value) : "", forced != 0});
}

/** A handler for `type` that only notes its drawing. It stays registered. */
template <const char *Type>
SCWidgetHandler *NotingHandler() {
    static SCWidgetHandler s_handler = [] {
        SCWidgetHandler handler{};
        handler.size = sizeof handler;
        handler.GetType = [](SCWidgetHandler *) { return KRAtomFromString(Type); };
        handler.GetName = [](SCWidgetHandler *, char *buffer, std::int32_t) { buffer[0] = '\0'; };
        handler.WriteAppearance = &NoteDrawing;
        return handler;
    }();
    return &s_handler;
}

inline constexpr char kTextType[] = "Text";
inline constexpr char kCheckBoxType[] = "CheckBox";
inline constexpr char kRadioType[] = "RadioButton";
inline constexpr char kListBoxType[] = "ListBox";
inline constexpr char kButtonType[] = "Button";

class Model : public testing::Test {
protected:
    void SetUp() override {
        StartModel();
        TSSCAppRegisterWidgetHandler(NotingHandler<kTextType>());
        TSSCAppRegisterWidgetHandler(NotingHandler<kCheckBoxType>());
        TSSCAppRegisterWidgetHandler(NotingHandler<kRadioType>());
        TSSCAppRegisterWidgetHandler(NotingHandler<kListBoxType>());
        TSSCAppRegisterWidgetHandler(NotingHandler<kButtonType>());
        DrawnLog().clear();
    }
};

/** Observes a server for the length of a test. */
using Listener = ServerListener<TessellaRegisterObserver, TessellaUnregisterObserver>;

inline DMField *FieldOf(const TestDoc &doc, const char *name) {
    return TSDMDocGetDMFieldFromName(doc.doc, name);
}

inline LexObj Str(const TestDoc &doc, const std::string &text) {
    return LexNewString(doc.lex, false, text.data(), static_cast<std::int32_t>(text.size()));
}

inline LexObj Name(const TestDoc &doc, const char *text) {
    return LexNewName(doc.lex, false, Atom(text));
}

/** An indirect widget of its own, on no page. */
inline LexObj NewWidget(const TestDoc &doc) {
    const LexObj dict = LexNewDict(doc.lex, true, 5);
    LexDictPut(dict, Type_K, Name(doc, "Annot"));
    LexDictPut(dict, Subtype_K, Name(doc, "Widget"));
    const LexObj rect = LexNewArray(doc.lex, false, 4);
    for (std::int32_t i = 0; i < 4; ++i) LexArrayPut(rect, i, LexNewInteger(doc.lex, false, 10 * (i + 1)));
    LexDictPut(dict, Rect_K, rect);
    return dict;
}
