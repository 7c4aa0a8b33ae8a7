// What in-process tests stand on: a running host without plug-ins, and documents written as text.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "KRTypes.h"
#include "tests/support/PdfText.h"

/** A document, closed with the object: in a view without a window, or as one of the lower layers has it. */
class TestDoc {
public:
    /** In a view. `objects` are the bodies of objects 1, 2, ...; object 1 is the catalog. Cross references are made. */
    explicit TestDoc(const std::vector<std::string> &objects);
    /** Opens a file as it stands, in a view. */
    explicit TestDoc(const char *path);
    /** Takes over what is in no view. */
    explicit TestDoc(DMDoc opened);
    /** Takes over what is in no document. */
    explicit TestDoc(LexDoc opened);
    ~TestDoc();
    TestDoc(const TestDoc &) = delete;
    TestDoc &operator=(const TestDoc &) = delete;
    operator DMDoc() const {
        return doc;
    }
    operator LexDoc() const {
        return lex;
    }

    SCDoc view = nullptr;
    DMDoc doc = nullptr;
    LexDoc lex = nullptr;

    /** Saves a copy and gives its bytes. */
    std::string Saved() const;
    /** The catalog's entry, or what a path such as "Tessella/Fields/0/V" leads to. */
    LexObj At(const std::string &path) const;
};
