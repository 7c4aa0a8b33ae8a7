// The options of the command line, each described once: the parser, the help texts, the manual page and the shell
// completion all come from here.
// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>

#include "cli/Commands.h"

namespace jackdaw::cli {

struct Options {
    std::string plugIns;
    /** NAME=N. */
    std::vector<std::string> limits;
    FieldsOptions fields;
    FillOptions fill;
    ResetOptions reset;
    RenderOptions render;
};

/** Fills `app` with all commands; they write into `options`, which must outlive it. */
void DescribeOptions(CLI::App &app, Options &options);

enum class ParseResult {
    /** A command is to be run. */
    Run,
    /** Help or version was asked for and printed. */
    Told,
    /** The list of limits is to be printed, which host and plug-in know. */
    Limits,
    /** The lines that say what is wrong are printed. */
    Wrong
};
ParseResult ParseArguments(CLI::App &app, int argc, char **argv);

/** The manual page, as roff source. */
std::string ManualPage(const CLI::App &app);
/** A completion script for bash. */
std::string Completion(const CLI::App &app);

} // namespace jackdaw::cli
