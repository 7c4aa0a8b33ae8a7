// The data of a stream as one text.
// SPDX-License-Identifier: MIT
#include "Common/src/miStream.h"

#include "KernelSupportHFT.h"
#include "PIFrame.h"

std::string miStreamData(LexObj stream, std::size_t enough) {
    std::string data;
    KRStm source = LexStreamOpenStm(stream, LexStreamDecoded);
    const KRErrorCode code = Protect([&] {
        char block[4096];
        std::int32_t got;
        while (data.size() < enough && (got = KRStmRead(block, 1, sizeof block, source)) > 0)
            data.append(block, static_cast<std::size_t>(got));
    });
    KRStmClose(source);
    RaiseIf(code);
    return data;
}
