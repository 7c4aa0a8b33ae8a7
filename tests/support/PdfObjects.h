// Compares PDF files object by object, and looks into them with the PDF library alone.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

/** What filling in may change; nothing by default. */
struct Allowed {
    /** The value, the faces and the font of the field of this full name. */
    std::function<bool(const std::string &name)> field;
    /** Fields may move within the field tree: the file has full names in place of partial ones. */
    bool tree = false;
};

/**
 * Where two files differ in what their catalogs and information dictionaries lead to: values, structure, and the stored
 * bytes of streams. Object numbers may differ, as long as what was one object stays one. The form's resources may grow.
 */
std::vector<std::string> CompareObjects(const std::string &before, const std::string &after,
                                        const Allowed &allowed = {});

/** The form asks for appearances to be made when it is opened. */
bool NeedsAppearances(const std::string &pdf);
/** Degrees that the pages are turned by, and the height of their boxes. */
struct PageShape {
    int rotation;
    double height;
};
std::vector<PageShape> PageShapes(const std::string &pdf);
