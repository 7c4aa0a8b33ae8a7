// The tables that other plug-ins call: each slot bound to the operation behind it.
// SPDX-License-Identifier: MIT
#include "shell/FormsTables.h"

#include <type_traits>

#include "Common/unix/mdMessages.h"
#include "CoreHFT.h"
#include "FormsAuthoringHFT.h"
#include "FormsHFT.h"
#include "KRErrors.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "appearance/FieldLook.h"
#include "appearance/miCStore.h"
#include "base/Limits.h"
#include "life/TessellaClean.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/DocSeals.h"
#include "model/LexField.h"
#include "model/OnKey.h"
#include "model/WidgetReg.h"
#include "model/WidgetType.h"
#include "objects/NameTree.h"
#include "objects/PageForm.h"
#include "objects/Tessella.h"
#include "services/Warnings.h"
#include "widgets/DMWidget.h"

namespace {

/**
 * The edge of a table: `Proc` in the shape of its slot, with bool for KRBool. Whatever is raised below unwinds to here
 * and is raised anew with no object of ours alive: the caller may be written in C, whose frame jumps over destructors.
 */
template <auto Proc, class Signature>
struct Entry;

template <auto Proc, class Result, class... Args>
struct Entry<Proc, Result(Args...)> {
    static Result Call(Args... args) {
        if constexpr (std::is_void_v<Result>) {
            RaiseIf(Protect([&] { Proc(args...); }));
        } else {
            static_assert(std::is_trivially_destructible_v<Result>);
            Result result{};
            RaiseIf(Protect([&] { result = static_cast<Result>(Proc(args...)); }));
            return result;
        }
    }
};

template <auto Proc, KRHFT *Table, int Selector, class Signature>
void Fill(KRHFT table, Slot<Table, Selector, Signature>) {
    const auto proc = reinterpret_cast<KRProc>(&Entry<Proc, Signature>::Call);
    KRHFTSetEntry(table, Selector, KRCallbackCreate(gExtensionID, proc), /*flags*/ 0);
}

/** A slot whose module is not part of this build: calling it raises `Code`, whose text says so. */
template <const KRErrorCode *Code, class Signature>
struct Absent;

template <const KRErrorCode *Code, class Result, class... Args>
struct Absent<Code, Result(Args...)> {
    static Result Call(Args...) {
        KRRaise(*Code);
    }
};

template <const KRErrorCode *Code, KRHFT *Table, int Selector, class Signature>
void FillAbsent(KRHFT table, Slot<Table, Selector, Signature>) {
    const auto proc = reinterpret_cast<KRProc>(&Absent<Code, Signature>::Call);
    KRHFTSetEntry(table, Selector, KRCallbackCreate(gExtensionID, proc), /*flags*/ 0);
}

KRErrorCode s_noExchange;
KRErrorCode s_noScripts;
KRErrorCode s_noDialogs;

void RegisterAbsences() {
    s_noExchange = KRRegisterErrorString(KRSeverityError, mdGetStringPtr(Msg::errorNoExchange));
    s_noScripts = KRRegisterErrorString(KRSeverityError, mdGetStringPtr(Msg::errorNoScripts));
    s_noDialogs = KRRegisterErrorString(KRSeverityError, mdGetStringPtr(Msg::errorNoDialogs));
}

void FillFields(KRHFT t) {
    Fill<&IsDMDocTessella>(t, Forms::IsDMDocTessella);
    Fill<&TSDMDocLoadDMFields>(t, Forms::TSDMDocLoadDMFields);
    Fill<&TSDMDocEnumDMFields>(t, Forms::TSDMDocEnumDMFields);
    Fill<&TSDMDocGetDMFieldFromName>(t, Forms::TSDMDocGetDMFieldFromName);
    Fill<&TSDMFieldFromLexObj>(t, Forms::TSDMFieldFromLexObj);
    Fill<&TSDMFieldGetLexObj>(t, Forms::TSDMFieldGetLexObj);
    Fill<&TSDMFieldIsValid>(t, Forms::TSDMFieldIsValid);
    Fill<&TSDMFieldIsTerminal>(t, Forms::TSDMFieldIsTerminal);
    Fill<&TSDMFieldGetValue>(t, Forms::TSDMFieldGetValue);
    Fill<&TSDMFieldGetFlags>(t, Forms::TSDMFieldGetFlags);
    Fill<&TSDMFieldGetName>(t, Forms::TSDMFieldGetName);
    Fill<&TSDMFieldIsAnnot>(t, Forms::TSDMFieldIsAnnot);
    Fill<&TSDMFieldSetValue>(t, Forms::TSDMFieldSetValue);
    Fill<&TSDMFieldSetFlags>(t, Forms::TSDMFieldSetFlags);
    Fill<&TSDMFieldSetOptions>(t, Forms::TSDMFieldSetOptions);
    Fill<&TSDMFieldReset>(t, Forms::TSDMFieldReset);
    Fill<&TSDMFieldValueChanged>(t, Forms::TSDMFieldValueChanged);
}

void FillExchange(KRHFT t) {
    FillAbsent<&s_noExchange>(t, Forms::OldExportAsFDF);
    FillAbsent<&s_noExchange>(t, Forms::OldExportAsHtml);
    FillAbsent<&s_noExchange>(t, Forms::OldImportAnFDF);
    FillAbsent<&s_noExchange>(t, Forms::ResetForm);
    FillAbsent<&s_noExchange>(t, Forms::ExportAsFDF97);
    FillAbsent<&s_noExchange>(t, Forms::ExportAsHtml);
    FillAbsent<&s_noExchange>(t, Forms::OldAssembleFormAndImportFDF);
    FillAbsent<&s_noExchange>(t, Forms::ExportAsFDFWithParams);
    FillAbsent<&s_noScripts>(t, Forms::TJSGetJSContext);
    FillAbsent<&s_noScripts>(t, Forms::TJSGetJSContextEx);
    FillAbsent<&s_noDialogs>(t, Forms::mdDisplayAppearanceEx);
}

void FillLayouts(KRHFT t) {
    Fill<&TSDMFormFromPage>(t, Forms::TSDMFormFromPage);
    Fill<&TSLayoutNew>(t, Forms::TSLayoutNew);
    Fill<&TSLayoutDelete>(t, Forms::TSLayoutDelete);
    Fill<&TSLayoutCreateStream>(t, Forms::TSLayoutCreateStream);
    Fill<&TSLayoutBorder>(t, Forms::TSLayoutBorder);
    Fill<&TSLayoutText>(t, Forms::TSLayoutText);
    Fill<&TSLayoutTextEx>(t, Forms::TSLayoutTextEx);
    Fill<&TSLayoutIconText>(t, Forms::TSLayoutIconText);
}

void FillWidgets(KRHFT t) {
    Fill<&TessellaRegisterObserver>(t, Forms::TessellaRegisterObserver);
    Fill<&TessellaUnregisterObserver>(t, Forms::TessellaUnregisterObserver);
    Fill<&TSDMWidgetGetRotation>(t, Forms::TSDMWidgetGetRotation);
    Fill<&TSDMFieldGetDefaultTextAppearance>(t, Forms::TSDMFieldGetDefaultTextAppearance);
    Fill<&TSDMFieldSetDefaultTextAppearance>(t, Forms::TSDMFieldSetDefaultTextAppearance);
    Fill<&TSDMWidgetGetBorder>(t, Forms::TSDMWidgetGetBorder);
    Fill<&TSDMWidgetSetBorder>(t, Forms::TSDMWidgetSetBorder);
    Fill<&TSDMWidgetGetAreaColors>(t, Forms::TSDMWidgetGetAreaColors);
    Fill<&TSDMWidgetSetAreaColors>(t, Forms::TSDMWidgetSetAreaColors);
}

KRHFT CreateTessellaHFT(KRHFTServer server) {
    KRHFT table = KRHFTNew(server, FormsHFTCount);
    FillFields(table);
    FillExchange(table);
    FillLayouts(table);
    FillWidgets(table);
    return table;
}

KRHFT CreateAuthoringHFT(KRHFTServer server) {
    KRHFT t = KRHFTNew(server, FormsAuthoringHFTCount);
    Fill<&TSSCAppRegisterWidgetHandler>(t, Forms::TSSCAppRegisterWidgetHandler);
    Fill<&TSSCAppGetWidgetHandlerByName>(t, Forms::TSSCAppGetWidgetHandlerByName);
    Fill<&TSSCAppEnumWidgetHandlers>(t, Forms::TSSCAppEnumWidgetHandlers);
    Fill<&TSDMAnnotDefineField>(t, Forms::TSDMAnnotDefineField);
    Fill<&TSLexDictDefineField>(t, Forms::TSLexDictDefineField);
    Fill<&TSDMAnnotLockField>(t, Forms::TSDMAnnotLockField);
    Fill<&TSDMAnnotRemoveField>(t, Forms::TSDMAnnotRemoveField);
    Fill<&TSLexDictCopyField>(t, Forms::TSLexDictCopyField);
    Fill<&TSDMFieldRename>(t, Forms::TSDMFieldRename);
    Fill<&TSDMFieldIsValidCheckType>(t, Forms::TSDMFieldIsValidCheckType);
    Fill<&TSDMDocCreateForm>(t, Forms::TSDMDocCreateForm);
    Fill<&TSDMDocDestroyForm>(t, Forms::TSDMDocDestroyForm);
    Fill<&TSDMFieldGetType>(t, Forms::TSDMFieldGetType);
    Fill<&TSDMFieldSetType>(t, Forms::TSDMFieldSetType);
    Fill<&TSDMFieldSetDefaultValue>(t, Forms::TSDMFieldSetDefaultValue);
    Fill<&TSDMFieldGetOptionIndex>(t, Forms::TSDMFieldGetOptionIndex);
    Fill<&TSDMFieldSetToOptionIndex>(t, Forms::TSDMFieldSetToOptionIndex);
    Fill<&TSDMFieldUpdateAppearance>(t, Forms::TSDMFieldUpdateAppearance);
    Fill<&TSDMWidgetGetSubType>(t, Forms::TSDMWidgetGetSubType);
    Fill<&WButtonGetOnKey>(t, Forms::WButtonGetOnKey);
    Fill<&TSAddNameEntry>(t, Forms::TSAddNameEntry);
    Fill<&TSRemoveNameEntry>(t, Forms::TSRemoveNameEntry);
    Fill<&TSFindNameEntry>(t, Forms::TSFindNameEntry);
    Fill<&TSFindNameEntryByObj>(t, Forms::TSFindNameEntryByObj);
    Fill<&TSEnumNameTree>(t, Forms::TSEnumNameTree);
    Fill<&TSRegenerateNameTree>(t, Forms::TSRegenerateNameTree);
    Fill<&TSDMWidgetValidateName>(t, Forms::TSDMWidgetValidateName);
    Fill<&TSFormWarningsObserve>(t, Forms::TSFormWarningsObserve);
    Fill<&TSFormWarningsIgnore>(t, Forms::TSFormWarningsIgnore);
    Fill<&TSDMDocGetSeals>(t, Forms::TSDMDocGetSeals);
    Fill<&TSLimitGet>(t, Forms::TSLimitGet);
    Fill<&TSLimitSet>(t, Forms::TSLimitSet);
    return t;
}

// All versions up to the limit get the same table.
KRHFT provideTessellaHFTServer(KRHFTServer server, std::uint32_t version) {
    static KRHFT s_table = nullptr;
    if (version > FormsHFTVersion) return nullptr;
    if (!s_table) s_table = CreateTessellaHFT(server);
    return s_table;
}

KRHFT ProvideAuthoring(KRHFTServer server, std::uint32_t version) {
    static KRHFT s_table = nullptr;
    if (version > FormsAuthoringHFTVersion) return nullptr;
    if (!s_table) s_table = CreateAuthoringHFT(server);
    return s_table;
}

} // namespace

bool ServeFormsTables() {
    RegisterAbsences();
    return KRHFTServerNew(FormsHFTName, PICallback(gExtensionID, &provideTessellaHFTServer)) &&
           KRHFTServerNew(FormsAuthoringHFTName, PICallback(gExtensionID, &ProvideAuthoring));
}
