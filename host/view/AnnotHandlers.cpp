// The registry of annotation handlers.
// SPDX-License-Identifier: MIT
#include "view/AnnotHandlers.h"

#include <map>

#include "doc/Annots.h"
#include "kernel/HostError.h"
#include "view/Registries.h"
#include "view/ViewRecords.h"

namespace jackdaw {

namespace {

std::map<KRAtom, SCAnnotHandler *> &handlers() {
    static std::map<KRAtom, SCAnnotHandler *> s_byType;
    return s_byType;
}

} // namespace

void RegisterAnnotHandler(SCAnnotHandler *handler) {
    const auto getType = handler ? MemberOf(handler, &SCAnnotHandler::getType) : nullptr;
    if (!getType) throw HostError{KRErrBadParam, "An annotation handler must tell its type."};
    KRAtom type = KRAtomNull;
    ThrowIf(HostProtect([&] { type = getType(handler); }));
    handlers()[type] = handler;
}

SCAnnotHandler *AnnotHandlerFor(DMAnnot annot) {
    const auto found = handlers().find(AnnotSubtype(annot));
    return found == handlers().end() ? nullptr : found->second;
}

void ForgetAnnotHandlers() {
    handlers().clear();
}

} // namespace jackdaw
