// `jackdaw render`: a page with its widgets as a picture.
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"

#include <memory>

#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "cli/Blocks.h"
#include "cli/Session.h"

namespace jackdaw::cli {

namespace {

constexpr int s_largestDpi = 2400;

} // namespace

void RunRender(const RenderOptions &options) {
    if (options.dpi < 1 || options.dpi > s_largestDpi)
        throw CommandFailed{"--dpi " + std::to_string(options.dpi) + ": not from 1 to " + std::to_string(s_largestDpi)};
    OpenDocument document(options.input);
    const std::int32_t pages = DMDocGetNumPages(document.Doc());
    if (options.page < 1 || options.page > pages)
        throw CommandFailed{document.Name() + ": there is no page " + std::to_string(options.page) +
                            "; the document has " + std::to_string(pages)};
    std::unique_ptr<ScratchFile> scratch;
    if (options.output == "-") scratch = std::make_unique<ScratchFile>();
    const std::string place = scratch ? scratch->Path() : options.output;
    const KRErrorCode code = Protect([&] {
        const HostPath path(place);
        SCDocRenderPage(document.Doc(), options.page - 1, options.dpi, KRGetDefaultFileSys(), path.Get());
    });
    if (code != KRErrNone)
        throw CommandFailed{SentenceOfFile(code, place, scratch ? "standard output" : options.output)};
    if (scratch) scratch->CopyToOutput();
}

} // namespace jackdaw::cli
