// Documents of the object layer alone, for its tests: opened from text, closed with the object.
// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <sstream>
#include <string>

#include "kernel/Atoms.h"
#include "kernel/HostError.h"
#include "lex/LexObjects.h"
#include "lex/Store.h"
#include "tests/support/HostFixture.h"

namespace lextest {

namespace lex = jackdaw::lex;

inline KRAtom atom(const char *text) {
    return jackdaw::AtomFromText(text);
}

/** In braces the bodies of objects 1, 2, ...; in parentheses the bytes of a file or a document already opened. */
class Doc {
public:
    Doc(std::initializer_list<std::string> objects) : Doc(PdfText(objects)) {}
    explicit Doc(const std::string &bytes) : Doc(lex::OpenPdfBytes("test.pdf", bytes, nullptr)) {}
    explicit Doc(LexDoc opened) : doc(opened) {}
    ~Doc() {
        lex::CloseStore(doc);
    }
    Doc(const Doc &) = delete;
    Doc &operator=(const Doc &) = delete;
    operator LexDoc() const {
        return doc;
    }

    /** What a path such as "A/0/X" leads to from the root. */
    LexObj at(const std::string &path) const {
        LexObj obj = lex::RootOf(doc);
        std::istringstream parts(path);
        for (std::string part; std::getline(parts, part, '/');)
            obj = lex::TypeOf(obj) == LexArray ? lex::ArrayGet(obj, std::stoi(part))
                                               : lex::DictGet(obj, atom(part.c_str()));
        return obj;
    }

    LexDoc doc;
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
