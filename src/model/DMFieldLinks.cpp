// The links between records.
// SPDX-License-Identifier: MIT
#include "model/DMFieldLinks.h"

#include "base/Limits.h"

namespace {

/** The chain from `parent` upward has room for one more level and does not hold `child`. */
bool MayLink(const DMField *parent, const DMField *child) {
    int depth = 0;
    for (const DMField *field = parent; field; field = field->parent) {
        if (field == child || ++depth > TSLimitOf(TSLimitFieldDepth)) return false;
    }
    return true;
}

/** Forgets that a group was found terminal, from here up as far as one name goes. */
void ForgetTerminal(DMField *field) {
    for (; field && field->terminalKnown; field = field->parent) field->terminalKnown = false;
}

/** Forgets that all kids of a group have records: one of them goes. */
void ForgetLoadedKids(DMField *child) {
    for (DMField *at = child->parent; at && at->name == child->name; at = at->parent) at->kidsLoaded = 0;
}

} // namespace

bool DMFieldLinkChild(DMField *parent, DMField *child) {
    if (child->parent == parent) return true;
    if (!MayLink(parent, child)) return false;
    DMFieldUnlinkChild(child);
    child->parent = parent;
    child->nextSibling = parent->firstChild;
    if (parent->firstChild) parent->firstChild->prevSibling = child;
    parent->firstChild = child;
    if (parent->name != child->name) parent->state |= DMFieldNotTerminal;
    if (parent->name != child->name || child->firstChild) ForgetTerminal(parent);
    return true;
}

void DMFieldUnlinkChild(DMField *child) {
    DMField *parent = child->parent;
    if (!parent) return;
    ForgetLoadedKids(child);
    (child->prevSibling ? child->prevSibling->nextSibling : parent->firstChild) = child->nextSibling;
    if (child->nextSibling) child->nextSibling->prevSibling = child->prevSibling;
    child->parent = child->nextSibling = child->prevSibling = nullptr;
}

DMField *DMFieldTopOfName(DMField *field) {
    while (field->parent && field->parent->name == field->name) field = field->parent;
    return field;
}

void DMFieldWipe(DMField *field) {
    DMFieldUnlinkChild(field);
    field->entries = 0;
    field->flags[TSAnnotWord] = field->flags[TSFieldWord] = 0;
    field->state |= DMFieldInvalid;
    field->type = KRAtomNull;
    field->terminalKnown = false;
}

bool TSDMFieldIsTerminal(DMField *field) {
    if (!field || field->state & (DMFieldInvalid | DMFieldNotTerminal)) return false;
    if (!field->firstChild || field->terminalKnown) return true;
    for (DMField *child = field->firstChild; child; child = child->nextSibling) {
        if (child->name == field->name && TSDMFieldIsTerminal(child)) continue;
        field->state |= DMFieldNotTerminal;
        return false;
    }
    // Stays until a child of another name or with children of its own is linked anywhere below.
    field->terminalKnown = true;
    return true;
}
