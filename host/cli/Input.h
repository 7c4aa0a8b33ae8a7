// What a command reads beside its document: data, a password, standard input. Nothing endless is read to the end.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace jackdaw::cli {

/** A whole file of data; "-" is standard input. Throws CommandFailed. */
std::string ReadData(const std::string &path);

/** The first line of a file, without its end; "-" is standard input. Throws CommandFailed. */
std::string ReadPassword(const std::string &path);

/** The document on standard input, with the rights of its file, into an open one. Throws CommandFailed. */
void CopyInputTo(int fd);

} // namespace jackdaw::cli
