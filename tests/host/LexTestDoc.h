// Documents of the object layer alone, for its tests: opened from text, closed with the object.
// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string>

#include "kernel/HostError.h"
#include "lex/LexObjects.h"
#include "lex/Store.h"
#include "tests/support/HostFixture.h"
#include "tests/support/Objects.h"

namespace lextest {

namespace lex = jackdaw::lex;

/** In braces the bodies of objects 1, 2, ...; in parentheses the bytes of a file or a document already opened. */
class Doc : public TestDoc {
public:
    Doc(std::initializer_list<std::string> objects) : Doc(PdfText(objects)) {}
    explicit Doc(const std::string &bytes) : TestDoc(lex::OpenPdfBytes("test.pdf", bytes, nullptr)) {}
    explicit Doc(LexDoc opened) : TestDoc(opened) {}
};

/** The code that `body` throws; 0 for none. */
template <class Body>
KRErrorCode codeOf(Body body) {
    try {
        body();
    } catch (const jackdaw::HostError &error) {
        return error.code;
    }
    return KRErrNone;
}

/** A loose copy in another document; scalars, arrays and dictionaries. */
inline LexObj copyDict(LexDoc to, LexObj from) {
    if (lex::TypeOf(from) == LexDict) {
        const LexObj copy = lex::NewDict(to, /*indirect*/ false);
        for (const auto &[key, value] : lex::DictEntries(from)) lex::DictPut(copy, key, copyDict(to, value));
        return copy;
    }
    if (lex::TypeOf(from) != LexArray) return lex::CopyScalar(to, from);
    const LexObj copy = lex::NewArray(to, /*indirect*/ false);
    for (std::int32_t i = 0; i < lex::ArrayLength(from); ++i)
        lex::ArrayPut(copy, i, copyDict(to, lex::ArrayGet(from, i)));
    return copy;
}

} // namespace lextest
