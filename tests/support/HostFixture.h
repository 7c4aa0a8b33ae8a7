// What in-process tests stand on: a running host without plug-ins, and documents written as text.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "KRTypes.h"
#include "tests/support/PdfText.h"

/** A document opened in a view without a window, closed with the object. */
class TestDoc {
public:
    /** `objects` are the bodies of objects 1, 2, ...; object 1 is the catalog. Cross references are made. */
    explicit TestDoc(const std::vector<std::string> &objects);
    /** Opens a file as it stands. */
    explicit TestDoc(const char *path);
    ~TestDoc();
    TestDoc(const TestDoc &) = delete;
    TestDoc &operator=(const TestDoc &) = delete;

    SCDoc view = nullptr;
    DMDoc doc = nullptr;
    LexDoc lex = nullptr;

    /** Saves a copy and gives its bytes. */
    std::string Saved() const;
    /** The catalog's entry, or what a path such as "Tessella/Fields/0/V" leads to. */
    LexObj At(const std::string &path) const;
};
