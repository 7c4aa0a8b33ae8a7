// Shared objects that do not get as far as a handshake: NoMain has no entry, OldVersion agrees on less than the host
// speaks, Unresolved needs a function that nobody has.
// SPDX-License-Identifier: MIT
#include "PIMain.h"

namespace {

enum class Fault { OldVersion, NoMain, Unresolved };
constexpr Fault s_fault = Fault::TEST_FAULT;

std::int32_t refuse(std::uint32_t, PISetupRecord *) {
    return 0;
}

} // namespace

void functionThatNobodyHas();

extern "C" __attribute__((visibility("default"))) std::int32_t entry(std::uint32_t, std::uint32_t *agreed,
                                                                     PISetupProc *setup) asm(TEST_ENTRY);

extern "C" std::int32_t entry(std::uint32_t, std::uint32_t *agreed, PISetupProc *setup) {
    if constexpr (s_fault == Fault::Unresolved) functionThatNobodyHas();
    *agreed = KRVersion(1, 0);
    *setup = &refuse;
    return 1;
}
