// Interned strings: an open hash table of atom numbers over texts that never move.
//
// 1. `buckets` has a power of two of places and is at most half full; a place holds an atom or KRAtomNull.
// 2. `hashes[atom]` is the hash of the atom's text without the slash.
// SPDX-License-Identifier: MIT
#include "kernel/Atoms.h"

#include <deque>
#include <vector>

#include "kernel/HostError.h"

namespace jackdaw {

namespace {

struct AtomTable {
    std::deque<std::string> keys;
    std::vector<std::uint32_t> hashes;
    std::vector<KRAtom> buckets = std::vector<KRAtom>(4096, KRAtomNull);
};

AtomTable &table() {
    // Never destroyed: plug-ins and static objects read atoms' texts to the very end of the process.
    static AtomTable &s_table = *new AtomTable;
    return s_table;
}

std::uint32_t hashOf(std::string_view text) {
    std::uint32_t hash = 2166136261u;
    for (const unsigned char byte : text) hash = (hash ^ byte) * 16777619u;
    return hash ^ hash >> 15;
}

std::string_view textOf(const AtomTable &atoms, KRAtom atom) {
    return std::string_view(atoms.keys[atom]).substr(1);
}

/** The place of the text, or the free place where it belongs. */
std::size_t placeOf(const AtomTable &atoms, std::string_view text, std::uint32_t hash) {
    const std::size_t mask = atoms.buckets.size() - 1;
    for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
        const KRAtom atom = atoms.buckets[place];
        if (atom == KRAtomNull) return place;
        if (atoms.hashes[atom] == hash && textOf(atoms, atom) == text) return place;
    }
}

void grow(AtomTable &atoms) {
    std::vector<KRAtom> buckets(atoms.buckets.size() * 2, KRAtomNull);
    const std::size_t mask = buckets.size() - 1;
    for (std::size_t atom = 0; atom < atoms.keys.size(); ++atom) {
        std::size_t place = atoms.hashes[atom] & mask;
        while (buckets[place] != KRAtomNull) place = (place + 1) & mask;
        buckets[place] = static_cast<KRAtom>(atom);
    }
    atoms.buckets.swap(buckets);
}

std::string_view withoutSlash(std::string_view key) {
    return !key.empty() && key.front() == '/' ? key.substr(1) : key;
}

bool s_refused = false;

} // namespace

bool AtomsWereRefused() {
    return s_refused;
}

KRAtom AtomFromText(std::string_view text) {
    AtomTable &atoms = table();
    const std::uint32_t hash = hashOf(text);
    std::size_t place = placeOf(atoms, text, hash);
    if (atoms.buckets[place] != KRAtomNull) return atoms.buckets[place];
    if (atoms.keys.size() >= AtomLimit) {
        s_refused = true;
        throw HostError{KRErrNoMemory, AtomsExhausted};
    }
    if ((atoms.keys.size() + 1) * 2 > atoms.buckets.size()) {
        grow(atoms);
        place = placeOf(atoms, text, hash);
    }
    std::string key = "/";
    key += text;
    const KRAtom atom = static_cast<KRAtom>(atoms.keys.size());
    // The text comes last, so that a failing allocation leaves at most a hash without a text.
    atoms.hashes.resize(atom + std::size_t{1});
    atoms.hashes[atom] = hash;
    atoms.keys.push_back(std::move(key));
    atoms.buckets[place] = atom;
    return atom;
}

KRAtom ExistingAtom(std::string_view text) {
    const AtomTable &atoms = table();
    return atoms.buckets[placeOf(atoms, text, hashOf(text))];
}

KRAtom AtomFromKey(std::string_view key) {
    return AtomFromText(withoutSlash(key));
}

KRAtom ExistingAtomFromKey(std::string_view key) {
    return ExistingAtom(withoutSlash(key));
}

const char *AtomText(KRAtom atom) {
    return AtomKey(atom).c_str() + 1;
}

const std::string &AtomKey(KRAtom atom) {
    static const std::string &s_none = *new std::string("/");
    const AtomTable &atoms = table();
    return atom < atoms.keys.size() ? atoms.keys[atom] : s_none;
}

} // namespace jackdaw
