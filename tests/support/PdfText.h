// Documents that tests write as text, and the files that they stand in. Needs no host.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/** The PDF text of `objects` (bodies of objects 1, 2, ...; 1 is the catalog). */
std::string PdfText(const std::vector<std::string> &objects);

/** A stream object. */
std::string StreamObject(const std::string &entries, const std::string &data);

/** A catalog with these entries, one Letter page, and `more` as objects 4 and on. */
std::vector<std::string> PageObjects(const std::string &catalogEntries = "", const std::vector<std::string> &more = {});
/** The same with a form whose `Fields` are `roots`. */
std::vector<std::string> TreeObjects(const std::string &roots, const std::vector<std::string> &more,
                                     const std::string &formExtra = "");
/** A widget with these entries, on no page. */
std::string WidgetObject(const std::string &entries);

/** A catalog, one Letter page and a form with `fields` as widgets merged with their fields; `formExtra` goes into the
 * form. */
std::vector<std::string> FormObjects(const std::vector<std::string> &fields, const std::string &formExtra = "");

inline bool Has(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

/** A file in a fresh folder that goes away with the process. */
std::string TempFile(const std::string &name, const std::string &bytes);
/** A device that is always full; empty where there is none. Root gets a node of its own: a faulty writer may replace
 * it. */
std::string FullDevice();
std::string ReadAll(const std::string &path);
