// The list of open views.
// SPDX-License-Identifier: MIT
#include "view/Views.h"

#include <algorithm>
#include <memory>

#include "doc/DocRecord.h"
#include "doc/Document.h"
#include "doc/Notify.h"
#include "kernel/Files.h"
#include "kernel/HostError.h"
#include "view/Selection.h"
#include "view/ViewPlatform.h"
#include "view/ViewRecords.h"

namespace jackdaw {

namespace {

using ViewList = std::vector<std::unique_ptr<SCDocRec>>;

/** Front to back. */
ViewList &views() {
    static ViewList s_list;
    return s_list;
}

ViewList::iterator find(SCDoc view) {
    return std::find_if(views().begin(), views().end(), [&](const auto &rec) { return rec.get() == view; });
}

/** One reference to a document, given up unless it is kept. */
class DocReference {
public:
    explicit DocReference(DMDoc doc) : doc_(doc) {}
    ~DocReference() {
        if (doc_) CloseDoc(doc_);
    }
    DocReference(const DocReference &) = delete;
    DocReference &operator=(const DocReference &) = delete;
    DMDoc keep() {
        return std::exchange(doc_, nullptr);
    }
    DMDoc get() const {
        return doc_;
    }

private:
    DMDoc doc_;
};

void tellFront(SCDoc former) {
    const SCDoc front = FrontView();
    if (former != front && ViewIsOpen(former)) NotifyView(SCDocDidDeactivate, former);
    if (front && ViewIsOpen(front)) NotifyView(SCDocDidActivate, front);
    NotifyView(SCAppFrontDocDidChange, FrontView());
}

/** Off the list, its window and pages given back; the record lives on in the result. */
std::unique_ptr<SCDocRec> takeOff(SCDoc view) {
    const auto place = find(view);
    std::unique_ptr<SCDocRec> rec = std::move(*place);
    views().erase(place);
    if (rec->window && Platform().closeWindow) Platform().closeWindow(rec->window);
    rec->window = nullptr;
    ReleaseHeldPages(rec->pageView);
    return rec;
}

void openWindow(SCDoc view) {
    if (!Platform().openWindow) return;
    const KRErrorCode code = HostProtect([&] { view->window = Platform().openWindow(view); });
    if (code == KRErrNone) return;
    NotifyViewDidOpen(view, code);
    if (ViewIsOpen(view)) CloseDoc(takeOff(view)->doc);
    ThrowIf(code);
}

/** Takes over the reference. */
SCDoc addView(DocReference &reference, const SCDocOpenParams *params) {
    const SCDoc former = FrontView();
    auto rec = std::make_unique<SCDocRec>();
    const SCDoc view = rec.get();
    rec->doc = reference.get();
    rec->readOnly = params && params->readOnly != 0;
    rec->pageView.owner = view;
    views().insert(views().begin(), std::move(rec));
    reference.keep();
    openWindow(view);
    NotifyViewDidOpen(view, KRErrNone);
    if (!ViewIsOpen(view)) return nullptr;
    if (FrontView() == view) tellFront(former);
    return ViewIsOpen(view) ? view : nullptr;
}

std::string lastPart(const std::string &path) {
    return path.substr(path.rfind('/') + 1);
}

} // namespace

SCDocRec &RecordOf(SCDoc view) {
    if (!ViewIsOpen(view)) throw HostError{KRErrBadParam, "The view is not open."};
    return *view;
}

SCPageViewRec &RecordOf(SCPageView view) {
    for (const auto &rec : views()) {
        if (&rec->pageView == view) return *view;
    }
    throw HostError{KRErrBadParam, "The page view is not open."};
}

SCDoc OpenFileInView(KRPathName path, KRFileSys fs, const SCDocOpenParams *params) {
    DocReference reference(OpenDoc(fs, path, params ? params->password : nullptr));
    if (const SCDoc shown = ViewOfDoc(reference.get())) {
        BringToFront(shown);
        return shown;
    }
    const std::string title = path ? lastPart(path->text) : "";
    const SCDoc view = addView(reference, params);
    if (view && view->title.empty()) view->title = title;
    return view;
}

SCDoc OpenFileThroughTable(KRPathName path, KRFileSys fs, const SCDocOpenParams *params) {
    SCDoc view = nullptr;
    ThrowIf(HostProtect([&] { view = SCDocOpenFromFileWithParams(path, fs, params); }));
    return view;
}

SCDoc OpenDocInView(DMDoc doc, const SCDocOpenParams *params) {
    CheckDoc(doc);
    if (const SCDoc shown = ViewOfDoc(doc)) {
        BringToFront(shown);
        return shown;
    }
    ++CheckDoc(doc).references;
    DocReference reference(doc);
    return addView(reference, params);
}

bool CloseView(SCDoc view, bool noDirtyCheck) {
    SCDocRec &rec = RecordOf(view);
    if (rec.closing) return false;
    rec.closing = true;
    const bool ask = !noDirtyCheck && rec.window && (DocFlags(rec.doc) & DMDocDirty) != 0 && Platform().confirmClose;
    if (ask && !Platform().confirmClose(view)) {
        rec.closing = false;
        return false;
    }
    // What an edit raises on being committed cannot keep the view open.
    HostProtect([&] { ClearSelection(view, /*highlight*/ false); });
    NotifyView(SCDocWillClose, view);
    const bool wasFront = FrontView() == view;
    if (wasFront) NotifyView(SCDocDidDeactivate, view);
    const std::unique_ptr<SCDocRec> gone = takeOff(view);
    NotifyView(SCDocDidClose, view);
    if (wasFront) tellFront(/*former*/ nullptr);
    if (IsOpenDoc(gone->doc)) CloseDoc(gone->doc);
    return true;
}

void CloseAllViews() {
    // A view that is being closed further out is left to that call.
    for (;;) {
        const auto open = std::find_if(views().begin(), views().end(), [](const auto &rec) { return !rec->closing; });
        if (open == views().end()) return;
        CloseView(open->get(), /*noDirtyCheck*/ true);
    }
}

bool ViewIsOpen(SCDoc view) {
    return find(view) != views().end();
}

std::vector<SCDoc> OpenViews() {
    std::vector<SCDoc> result;
    for (const auto &rec : views()) result.push_back(rec.get());
    return result;
}

SCDoc FrontView() {
    return views().empty() ? nullptr : views().front().get();
}

void BringToFront(SCDoc view) {
    RecordOf(view);
    const SCDoc former = FrontView();
    if (former == view) return;
    const auto place = find(view);
    std::rotate(views().begin(), place, place + 1);
    if (view->window && Platform().raiseWindow) Platform().raiseWindow(view->window);
    tellFront(former);
}

SCDoc ViewOfDoc(DMDoc doc) {
    for (const auto &rec : views()) {
        if (rec->doc == doc && !rec->closing) return rec.get();
    }
    return nullptr;
}

DMDoc DocOfView(SCDoc view) {
    return RecordOf(view).doc;
}

SCPageView PageViewOf(SCDoc view) {
    return &RecordOf(view).pageView;
}

SCWindow WindowOfView(SCDoc view) {
    return RecordOf(view).window;
}

const std::string &TitleOfView(SCDoc view) {
    return RecordOf(view).title;
}

bool ViewIsReadOnly(SCDoc view) {
    return RecordOf(view).readOnly;
}

} // namespace jackdaw
