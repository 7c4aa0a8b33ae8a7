// What was wrong with a document's file: the library's complaints, the objects that a repair did not find, and the
// failures of the machine, which the library takes for damage.
// SPDX-License-Identifier: MIT
#include "lex/StoreParts.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFXRefEntry.hh>

#include "kernel/Atoms.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "kernel/Memory.h"
#include "lex/FileSource.h"

namespace jackdaw::lex {

namespace {

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/** Slips of the pen that every reader reads alike, and that lose nothing. */
bool isHarmless(const LexDocRec &doc, std::string_view complaint) {
    // The library knows no FDF header; that it is there was tested before.
    if (doc.fdf && complaint == "can't find PDF header") return true;
    static constexpr std::array<std::string_view, 5> s_harmless{
        "has duplicated key", "is not one plus the highest object number", "extraneous whitespace",
        "followed by carriage return only", "accepting invalid xref table entry"};
    return std::any_of(s_harmless.begin(), s_harmless.end(),
                       [&](std::string_view known) { return contains(complaint, known); });
}

void keep(LexDocRec &doc, std::string line) {
    if (std::ssize(doc.warnings) < LimitOf(Limit::DamageLines))
        doc.warnings.push_back(std::move(line));
    else
        ++doc.moreWarnings;
}

/**
 * A reference to an object that a sound file does not have means null. In a rebuilt one the object was lost. Numbers
 * above those of the file may be of objects made and destroyed here, unless the document is only being opened.
 */
void seekMissingObjects(LexDocRec &doc, bool opening) {
    if (doc.soughtMissing || !doc.facts.repaired) return;
    doc.soughtMissing = true;
    const auto table = doc.pdf->getXRefTable();
    const int highest = table.empty() ? 0 : table.rbegin()->first.getObj();
    for (QPDFObjectHandle &object : doc.pdf->getAllObjects()) {
        if (!object.isNull() || table.count(object.getObjGen()) > 0) continue;
        if (!opening && object.getObjectID() > highest) continue;
        keep(doc, doc.facts.name + " (object " + object.getObjGen().unparse(' ') +
                      "): is missing; whatever refers to it is incomplete");
    }
    CollectWarnings(doc);
}

} // namespace

bool isOfMemory(std::string_view complaint) {
    // The decryptor takes any bytes: what it complains of is that it cannot be set up.
    return contains(complaint, "memory") || contains(complaint, "bad_alloc") || contains(complaint, "gnutls: ");
}

void CollectWarnings(LexDocRec &doc) {
    for (const QPDFExc &warning : doc.pdf->getWarnings()) {
        const std::string &complaint = warning.getMessageDetail();
        if (isOfMemory(complaint)) doc.lacksMemory = true;
        if (contains(complaint, "reconstruct")) doc.facts.repaired = true;
        if (!isHarmless(doc, complaint)) keep(doc, warning.what());
    }
}

void BoundComplaints(LexDocRec &doc) {
    CollectWarnings(doc);
    if (std::ssize(doc.warnings) + static_cast<std::int64_t>(doc.moreWarnings) > LimitOf(Limit::DamageCount))
        throw HostError{KRErrNoMemory, doc.facts.name + ": is damaged in more places than can be repaired"};
}

void AssessOpened(LexDocRec &doc) {
    CollectWarnings(doc);
    seekMissingObjects(doc, /*opening*/ true);
    RequireWhole(doc);
}

void RequireWhole(LexDocRec &doc) {
    CollectWarnings(doc);
    if (AtomsWereRefused()) throw HostError{KRErrNoMemory, AtomsExhausted};
    if (doc.lacksMemory || FailedAllocations() != doc.failedAllocations) throw HostError{KRErrNoMemory};
    if (doc.source) doc.source->requireWhole();
}

std::vector<std::string> DamageOf(LexDoc handle) {
    LexDocRec &doc = OpenRecord(handle);
    CollectWarnings(doc);
    seekMissingObjects(doc, /*opening*/ false);
    RequireWhole(doc);
    std::vector<std::string> lines = doc.warnings;
    if (doc.moreWarnings > 0)
        lines.push_back(doc.facts.name + ": and " + std::to_string(doc.moreWarnings) + " complaints more");
    return lines;
}

} // namespace jackdaw::lex
