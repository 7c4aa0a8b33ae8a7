// The program jackdaw: parses the command line, starts the host with its plug-ins, runs the command.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <string>

#include "PIFrame.h"
#include "app/Startup.h"
#include "cli/LimitOptions.h"
#include "cli/Options.h"
#include "cli/Session.h"
#include "kernel/Apart.h"
#include "kernel/Ending.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "kernel/Memory.h"

namespace {

using namespace jackdaw;
using namespace jackdaw::cli;

/** A picture of one page is not worth the machine: what a file may take to be read grows with it from a small start. */
void BoundReading(const std::string &path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    const std::int64_t bytes = error ? 0 : static_cast<std::int64_t>(std::min(size, std::uintmax_t{1} << 34));
    BoundProcess({LimitOf(Limit::DrawSeconds), LimitOf(Limit::DrawBytes) + 64 * bytes});
}

int RunCommand(const CLI::App &app, const Options &options) {
    SetLimits(options.limits);
    if (app.got_subcommand("fields")) RunFields(options.fields);
    if (app.got_subcommand("fill")) RunFill(options.fill);
    if (app.got_subcommand("reset")) RunReset(options.reset);
    if (app.got_subcommand("render")) {
        BoundReading(options.render.input.file);
        RunRender(options.render);
    }
    return AnyWarnings() ? ExitWarnings : ExitDone;
}

// Whatever a command meets ends here as one line.
template <class Body>
int RunGuarded(Body body) {
    std::string failure;
    int result = ExitNothingDone;
    const KRErrorCode code = Protect([&] {
        try {
            result = body();
        } catch (const CommandFailed &failed) {
            failure = failed.what;
        }
    });
    if (code != KRErrNone) failure = SentenceOf(code);
    if (!failure.empty()) PrintFailure(failure);
    return failure.empty() ? result : ExitNothingDone;
}

// For packaging: what is derived from the options.
bool PrintDerived(int argc, char **argv, const CLI::App &app) {
    if (argc != 2) return false;
    const bool manual = std::strcmp(argv[1], "--print-manual") == 0;
    const bool completion = std::strcmp(argv[1], "--print-completion") == 0;
    if (manual) std::fputs(ManualPage(app).c_str(), stdout);
    if (completion) std::fputs(Completion(app).c_str(), stdout);
    return manual || completion;
}

[[noreturn]] void Run(int argc, char **argv) {
    CLI::App app;
    Options options;
    DescribeOptions(app, options);
    if (PrintDerived(argc, argv, app)) LeaveProcess(ExitDone);
    const ParseResult parsed = ParseArguments(app, argc, argv);
    if (parsed == ParseResult::Told) LeaveProcess(ExitDone);
    if (parsed == ParseResult::Wrong) LeaveProcess(ExitNothingDone);
    HostOptions host;
    host.plugInDir = options.plugIns;
    StartHost(host);
    const int result = RunGuarded([&] {
        if (parsed == ParseResult::Run) return RunCommand(app, options);
        ListLimits();
        return static_cast<int>(ExitDone);
    });
    try {
        StopHost();
    } catch (const std::exception &) {
        // What the command did stands, and was told.
    } catch (const HostError &) {
    }
    LeaveProcess(result);
}

// The libraries allocate when they start, which is before main.
void WatchEarly() {
    WatchExceptions();
}
[[gnu::section(".preinit_array"), gnu::used]] void (*const s_watchEarly)() = &WatchEarly;

} // namespace

int main(int argc, char **argv) {
    WatchEnding();
    WatchAllocations();
    try {
        Run(argc, argv);
    } catch (const HostError &error) {
        PrintFailure(error.what.empty() ? ErrorSentence(error.code) : error.what);
        return ExitNothingDone;
    }
    // Whatever else is thrown, the lack of memory above all, ends in the same way.
}
