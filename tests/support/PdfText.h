// Documents that tests write as text, and the files that they stand in. Needs no host.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/** The PDF text of `objects` (bodies of objects 1, 2, ...; 1 is the catalog). */
std::string PdfText(const std::vector<std::string> &objects);

/** A catalog, one Letter page and a form with `fields` as widgets merged with their fields; `formExtra` goes into the
 * form. */
std::vector<std::string> FormObjects(const std::vector<std::string> &fields, const std::string &formExtra = "");

/** A file in a fresh folder that goes away with the process. */
std::string TempFile(const std::string &name, const std::string &bytes);
std::string ReadAll(const std::string &path);
