// Fuzz target: any bytes as a default appearance string. What can be read is written, and reads the same again.
// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <cstring>

#include "LexHFT.h"
#include "PIFrame.h"
#include "base/BufCont.h"
#include "objects/TextLook.h"
#include "tests/support/StartForms.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    StartForms();
    static LexDoc s_doc = LexDocCreate();
    TextAppearance look, again;
    const auto parse = [&](const char *bytes, std::size_t length, TextAppearance *into) {
        return Protect([&] {
            TSLexStringGetTextAppearance(
                LexNewString(s_doc, /*indirect*/ false, bytes, static_cast<std::int32_t>(length)), into);
        });
    };
    if (parse(reinterpret_cast<const char *>(data), size, &look) != KRErrNone) return 0;
    BufControl buffer{};
    if (BufControlAlloc(&buffer, 4096) != 0) return 0;
    if (TextAppearanceSTRM(&look, &buffer) == 0 && parse(buffer.data, buffer.length, &again) == KRErrNone &&
        look.fontResource != again.fontResource)
        std::abort();
    BufControlFree(&buffer);
    return 0;
}
