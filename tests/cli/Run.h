// Runs programs and says what came of it.
// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

struct Ran {
    /** -1 when a signal ended the program; the time limit is SIGALRM. */
    int exit = -1;
    int signal = 0;
    std::string out;
    std::string err;
};

/** For failure messages. */
std::ostream &operator<<(std::ostream &stream, const Ran &ran);

struct RunOptions {
    std::string in;
    /** Largest file that the program may write, in bytes; 0 is no limit. Writing beyond fails as on a full disk. */
    long fileLimit = 0;
    unsigned seconds = 120;
};

Ran RunProgram(const std::vector<std::string> &command, const RunOptions &options = {});
/** The built jackdaw with these arguments. */
Ran Jackdaw(std::vector<std::string> arguments, const RunOptions &options = {});
/** A path in a fresh folder where nothing is yet. */
std::string NewName();
std::size_t CountLines(const std::string &text);
/** The program is installed. */
bool HasProgram(const std::string &name);

/** What `fields --json` says, by name. Fails the test unless the command lists them, be it with warnings. */
std::map<std::string, Json> FieldsOf(const std::string &pdf);
/** The value of one field as `fields --json` has it. */
Json ValueIn(const std::string &pdf, const std::string &name);
