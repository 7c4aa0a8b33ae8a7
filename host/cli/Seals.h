// What filling in would break or leave out of date: signatures, usage rights, a second description of the form.
// SPDX-License-Identifier: MIT
#pragma once

#include "cli/Session.h"

namespace jackdaw::cli {

/**
 * For commands that change a document: a signed or certified one is refused unless `breakSignatures`, as the whole file
 * is written anew. Warns of what else will not hold. Throws CommandFailed.
 */
void RequireUnsealed(const OpenDocument &document, bool breakSignatures);

} // namespace jackdaw::cli
