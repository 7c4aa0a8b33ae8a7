// What a command reads beside its document: data, a password, standard input. Nothing endless is read to the end.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <string>

namespace jackdaw::cli {

/** A whole file of data; "-" is standard input. Throws CommandFailed. */
std::string ReadData(const std::string &path);

/** The first line of a file, without its end; "-" is standard input. Throws CommandFailed. */
std::string ReadPassword(const std::string &path);

/** The document on standard input, into `out`. Throws CommandFailed. */
void CopyInputTo(std::FILE *out);

} // namespace jackdaw::cli
