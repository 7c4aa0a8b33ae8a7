// A plug-in that logs each step of its life, and fails at the one that TEST_FAULT names.
//
// a_server exports the table "LoaderTest"; b_client looks for it in its replace-and-register.
// SPDX-License-Identifier: MIT
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "CoreHFT.h"
#include "KRErrors.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "PIMain.h"

namespace {

enum class Fault { None, Handshake, Export, Register, Init };
constexpr Fault s_fault = Fault::TEST_FAULT;

void log(const char *step) {
    const char *const path = std::getenv("LOADER_TEST_LOG");
    std::FILE *const file = path ? std::fopen(path, "a") : nullptr;
    if (!file) return;
    std::fprintf(file, "%s %s\n", TEST_NAME, step);
    std::fclose(file);
}

bool isNamed(const char *name) {
    return std::strcmp(TEST_NAME, name) == 0;
}

void answer(std::int32_t *number) {
    *number = 42;
}

KRHFT provideTable(KRHFTServer server, std::uint32_t version) {
    static KRHFT s_table = nullptr;
    if (version > KRVersion(1, 1)) return nullptr;
    if (!s_table) {
        s_table = KRHFTNew(server, 2);
        KRHFTSetEntry(s_table, 1, KRCallbackCreate(gExtensionID, reinterpret_cast<KRProc>(&answer)), 0);
    }
    return s_table;
}

// As a plug-in in C does it: the restore routine jumps, over whatever of the host lies between.
[[noreturn]] void jumpBack(void *env) {
    std::longjmp(*static_cast<std::jmp_buf *>(env), 1);
}

KRErrorCode codeOfFailingCall() {
    std::jmp_buf env;
    KRPushExceptionFrame(&env, &jumpBack);
    if (setjmp(env) == 0) {
        KRHFTSetEntry(nullptr, 1, nullptr, 0);
        KRPopExceptionFrame();
        return KRErrNone;
    }
    KRPopExceptionFrame();
    return KRGetExceptionCode();
}

KRBool exportTables() {
    log("export");
    if (isNamed("a_server")) KRHFTServerNew("LoaderTest", PICallback(gExtensionID, &provideTable));
    return s_fault != Fault::Export;
}

KRBool replaceAndRegister() {
    log("register");
    if (isNamed("b_client") && KRGetHFT(KRAtomFromString("LoaderTest"), KRVersion(1, 0))) log("found the table");
    if (s_fault == Fault::Register) KRRaise(KRErrBadField);
    return 1;
}

KRBool init() {
    log("init");
    if (codeOfFailingCall() == KRErrBadParam) log("jumped");
    return s_fault != Fault::Init;
}

KRBool unload() {
    log("unload");
    return 1;
}

} // namespace

std::int32_t PIHandshake(std::uint32_t, PIHandshakeRecord *record) {
    if (s_fault == Fault::Handshake) return 0;
    record->extensionName = KRAtomFromString(TEST_NAME);
    record->exportHFTs = PICallback(gExtensionID, &exportTables);
    record->replaceAndRegister = PICallback(gExtensionID, &replaceAndRegister);
    record->init = PICallback(gExtensionID, &init);
    record->unload = PICallback(gExtensionID, &unload);
    return 1;
}
