// The commands of the command line, each with the options it takes.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace jackdaw::cli {

/** What every command takes. Paths may be "-". */
struct InputOptions {
    std::string file;
    std::string passwordFile;
    /** Nothing is done when there is anything to warn about. */
    bool strict = false;
};

struct FieldsOptions {
    InputOptions input;
    bool json = false;
};

struct FillOptions {
    InputOptions input;
    /** NAME=VALUE. */
    std::vector<std::string> sets;
    /** A file: objects of names and values, or records of fields. */
    std::string json;
    std::string output;
    bool breakSignatures = false;
};

struct ResetOptions {
    InputOptions input;
    /** Empty: all fields. */
    std::vector<std::string> names;
    std::string output;
    bool breakSignatures = false;
};

struct RenderOptions {
    InputOptions input;
    /** From 1. */
    int page = 1;
    int dpi = 96;
    std::string output;
};

// Each throws CommandFailed when nothing could be done, and warns about what it passed over.

void RunFields(const FieldsOptions &options);
void RunFill(const FillOptions &options);
void RunReset(const ResetOptions &options);
void RunRender(const RenderOptions &options);

} // namespace jackdaw::cli
