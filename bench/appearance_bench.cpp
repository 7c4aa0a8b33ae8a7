// How fast appearances are made: one text field's value set over and over, and the layout of texts alone. The plug-in's
// libraries run in one process with the viewer's.
// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "ScreenViewHFT.h"
#include "app/Startup.h"
#include "appearance/miCStore.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "objects/TextLook.h"
#include "tests/support/StartForms.h"

namespace {

SCDoc s_view;

void OpenForm(const char *path) {
    KRPathName name = KRPathFromPlatformPath(path);
    s_view = SCDocOpenFromFile(name, KRGetDefaultFileSys(), /*params*/ nullptr);
    KRFileSysReleasePath(KRGetDefaultFileSys(), name);
}

KRBool TakeFirst(DMField *field, void *first) {
    *static_cast<DMField **>(first) = field;
    return false;
}

void SetTextValue(benchmark::State &state) {
    DMDoc doc = SCDocGetDMDoc(s_view);
    LexDoc lex = DMDocGetLexDoc(doc);
    DMField *field = nullptr;
    TSDMDocEnumDMFields(doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ true, &TakeFirst, &field);
    std::int32_t number = 0;
    for (auto _ : state) {
        const std::string text = "Value number " + std::to_string(++number);
        const bool accepted = TSDMFieldSetValue(
            field, LexNewString(lex, /*indirect*/ false, text.data(), static_cast<std::int32_t>(text.size())));
        if (!accepted) state.SkipWithError("the field refused its value");
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(SetTextValue);

// `range` 0: one line; else a text of so many words, wrapped. Automatic size both times.
void LayOutText(benchmark::State &state) {
    const KRFixedRect rect{0, KRFixedFromInt(200), KRFixedFromInt(300), 0};
    const TSBorder border{TSBorderSolid, 1, 0, {}};
    std::string text = "One line of text";
    for (std::int64_t i = 0; i < state.range(0); ++i) text += i % 7 ? " words" : " and more";
    for (auto _ : state) {
        CStore *store = TSLayoutNew(&rect, 0);
        TextAppearance look = TextAppearanceDefault();
        std::string copy = text;
        TSLayoutText(store, state.range(0) > 0, /*wrap*/ true, &border, &look, copy.data());
        benchmark::DoNotOptimize(store->length);
        TSLayoutDelete(store);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(LayOutText)->Arg(0)->Arg(50)->Arg(500);

} // namespace

int main(int argc, char **argv) {
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::fputs("usage: appearance_bench [--benchmark_...] FORM, made by gen_forms\n", stderr);
        return 2;
    }
    StartForms();
    OpenForm(argv[1]);
    benchmark::RunSpecifiedBenchmarks();
    SCDocClose(s_view, /*noDirtyCheck*/ true);
    jackdaw::StopHost();
    return 0;
}
