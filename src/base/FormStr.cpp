// The atoms of the words that the plug-in uses, and the entries that the form model tracks.
// SPDX-License-Identifier: MIT
#include "base/FormStr.h"

#include "CoreHFT.h"

#define TESSELLA_DEFINE_ATOM(variable, text) KRAtom variable = KRAtomNull;
TESSELLA_ATOMS(TESSELLA_DEFINE_ATOM)
#undef TESSELLA_DEFINE_ATOM

namespace {

struct AtomRow {
    KRAtom *variable;
    const char *text;
};
constexpr AtomRow s_atoms[] = {
#define TESSELLA_ATOM_ROW(variable, text) {&variable, text},
    TESSELLA_ATOMS(TESSELLA_ATOM_ROW)
#undef TESSELLA_ATOM_ROW
};

struct EntryRow {
    std::uint32_t mask;
    KRAtom *name;
};
/** In the order in which a name is looked for. */
constexpr EntryRow s_entries[] = {{TSEntryDV, &default_K}, {TSEntryV, &value_K},       {TSEntryVT, &VT_K},
                                  {TSEntryDA, &textApp_K}, {TSEntryOH, &origHeight_K}, {TSEntryDR, &defRes_K},
                                  {TSEntryQ, &quadding_K}};

} // namespace

void TessellaKRAtoms() {
    for (const AtomRow &row : s_atoms) *row.variable = KRAtomFromString(row.text);
}

KRAtom Entry_to_Name(std::uint32_t mask) {
    for (const EntryRow &row : s_entries)
        if (row.mask == mask) return *row.name;
    return KRAtomNull;
}

std::uint32_t Name_to_Entry(KRAtom name) {
    for (const EntryRow &row : s_entries)
        if (*row.name == name) return row.mask;
    return 0;
}
