// Selections and their servers.
// SPDX-License-Identifier: MIT
#include "view/Selection.h"

#include <vector>

#include "kernel/Atoms.h"
#include "kernel/HostError.h"
#include "kernel/Memory.h"
#include "view/AnnotHandlers.h"
#include "view/Registries.h"
#include "view/ViewRecords.h"
#include "view/Views.h"

namespace jackdaw {

namespace {

struct Server {
    KRAtom type;
    SCSelectionServer *record;
};

/** The newest last. */
std::vector<Server> &servers() {
    static std::vector<Server> s_list;
    return s_list;
}

SCSelectionServer *serverOf(KRAtom type) {
    for (auto it = servers().rbegin(); it != servers().rend(); ++it) {
        if (it->type == type) return it->record;
    }
    return nullptr;
}

/** Takes leave of what was selected; gives the first code that came up. */
KRErrorCode lose(SCDoc view, SCSelectionServer *server, void *data, bool highlight) {
    KRErrorCode code = KRErrNone;
    if (const auto losing = MemberOf(server, &SCSelectionServer::losingSelection))
        code = HostProtect([&] { losing(view, data, highlight); });
    if (const auto destroy = MemberOf(server, &SCSelectionServer::destroy)) {
        const KRErrorCode destroyCode = HostProtect([&] { destroy(view, data); });
        if (code == KRErrNone) code = destroyCode;
    }
    return code;
}

/** A pair of the server's record: whether, and do it. */
struct EditPair {
    SCCanEditProc SCSelectionServer::*can;
    SCEditProc SCSelectionServer::*edit;
};

EditPair pairOf(SelectionEdit edit) {
    using Server = SCSelectionServer;
    switch (edit) {
    case SelectionEdit::Cut:
        return {&Server::canCut, &Server::cut};
    case SelectionEdit::Copy:
        return {&Server::canCopy, &Server::copy};
    case SelectionEdit::Paste:
        return {&Server::canPaste, &Server::paste};
    case SelectionEdit::Delete:
        return {&Server::canDelete, &Server::deleteSelection};
    case SelectionEdit::SelectAll:
        return {&Server::canSelectAll, &Server::selectAll};
    default:
        return {&Server::canProperties, &Server::properties};
    }
}

// The host's own server.

using SelectionProc = void (*SCAnnotHandler::*)(SCAnnotHandler *, DMAnnot, SCPageView);

void tellHandler(SCDoc view, void *data, SelectionProc member) {
    const DMAnnot annot = *static_cast<const DMAnnot *>(data);
    SCAnnotHandler *handler = AnnotHandlerFor(annot);
    const auto proc = handler ? MemberOf(handler, member) : nullptr;
    if (proc) ThrowIf(HostProtect([&] { proc(handler, annot, PageViewOf(view)); }));
}

KRBool annotKeyDown(SCDoc, void *data, std::uint16_t key, std::uint32_t flags) {
    const DMAnnot annot = *static_cast<const DMAnnot *>(data);
    SCAnnotHandler *handler = AnnotHandlerFor(annot);
    const auto proc = handler ? MemberOf(handler, &SCAnnotHandler::doKeyDown) : nullptr;
    KRBool taken = 0;
    if (proc) ThrowIf(HostProtect([&] { taken = proc(handler, annot, key, flags); }));
    return taken;
}

} // namespace

bool RegisterSelectionServer(SCSelectionServer *server) {
    if (!server) return false;
    const auto getType = MemberOf(server, &SCSelectionServer::getType);
    if (!getType) return false;
    KRAtom type = KRAtomNull;
    ThrowIf(HostProtect([&] { type = getType(); }));
    if (type == KRAtomNull) return false;
    servers().push_back({type, server});
    return true;
}

void InstallAnnotSelection() {
    static SCSelectionServer s_server{
        sizeof(SCSelectionServer),
        [] { return AtomFromText("Annotation"); },
        [](SCDoc view, void *data, KRBool) { tellHandler(view, data, &SCAnnotHandler::addedToSelection); },
        [](SCDoc view, void *data, KRBool) { tellHandler(view, data, &SCAnnotHandler::removedFromSelection); },
        &annotKeyDown,
        [](SCDoc, void *data) { Release(data); },
    };
    RegisterSelectionServer(&s_server);
}

KRAtom SelectionType(SCDoc view) {
    return RecordOf(view).selectionType;
}

void *SelectionData(SCDoc view) {
    return RecordOf(view).selection;
}

bool SetSelection(SCDoc view, KRAtom type, void *data, bool highlight) {
    SCDocRec &rec = RecordOf(view);
    SCSelectionServer *server = serverOf(type);
    if (!server) return false;
    // Clearing would destroy the very data that is to be selected.
    if (rec.selectionType == type && rec.selection == data) return true;
    if (!ClearSelection(view, highlight) || !ViewIsOpen(view)) return false;
    rec.selectionType = type;
    rec.selection = data;
    const auto getting = MemberOf(server, &SCSelectionServer::gettingSelection);
    if (!getting) return true;
    const KRErrorCode code = HostProtect([&] { getting(view, data, highlight); });
    if (code == KRErrNone) return true;
    if (ViewIsOpen(view) && rec.selectionType == type && rec.selection == data) {
        rec.selectionType = KRAtomNull;
        rec.selection = nullptr;
        if (const auto destroy = MemberOf(server, &SCSelectionServer::destroy))
            HostProtect([&] { destroy(view, data); });
    }
    ThrowIf(code);
    return false;
}

bool ClearSelection(SCDoc view, bool highlight) {
    SCDocRec &rec = RecordOf(view);
    if (rec.selectionType == KRAtomNull) return true;
    SCSelectionServer *server = serverOf(rec.selectionType);
    void *data = rec.selection;
    rec.selectionType = KRAtomNull;
    rec.selection = nullptr;
    ThrowIf(lose(view, server, data, highlight));
    return !ViewIsOpen(view) || rec.selectionType == KRAtomNull;
}

bool SelectionKeyDown(SCDoc view, std::uint16_t key, std::uint32_t flags) {
    const SCDocRec &rec = RecordOf(view);
    if (rec.selectionType == KRAtomNull) return false;
    const auto keyDown = MemberOf(serverOf(rec.selectionType), &SCSelectionServer::keyDown);
    bool taken = false;
    if (keyDown) ThrowIf(HostProtect([&] { taken = keyDown(view, rec.selection, key, flags) != 0; }));
    return taken;
}

bool CanEditSelection(SCDoc view, SelectionEdit edit) {
    const SCDocRec &rec = RecordOf(view);
    if (rec.selectionType == KRAtomNull) return false;
    const SCSelectionServer *server = serverOf(rec.selectionType);
    const EditPair pair = pairOf(edit);
    const auto can = MemberOf(server, pair.can);
    if (!can || !MemberOf(server, pair.edit)) return false;
    bool result = false;
    ThrowIf(HostProtect([&] { result = can(view, rec.selection) != 0; }));
    return result;
}

void EditSelection(SCDoc view, SelectionEdit edit) {
    if (!CanEditSelection(view, edit)) return;
    // Asking may have changed what is selected.
    const SCDocRec &rec = RecordOf(view);
    const SCSelectionServer *server = serverOf(rec.selectionType);
    const auto proc = server ? MemberOf(server, pairOf(edit).edit) : nullptr;
    if (proc) ThrowIf(HostProtect([&] { proc(view, rec.selection); }));
}

void ForgetSelectionServers() {
    servers().clear();
}

} // namespace jackdaw
