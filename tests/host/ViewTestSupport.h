// What the tests of the views share: documents of some pages, and an ear for the notifications of views.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "tests/support/HostFixture.h"
#include "tests/support/Objects.h"

namespace viewtest {

/** `count` pages, page i being 100 + 10 i points high; `extra` are entries of all pages, `catalog` of the catalog. */
inline std::vector<std::string> pages(int count, const std::string &extra = "", const std::string &catalog = "") {
    std::vector<std::string> objects{"<< /Type /Catalog /Pages 2 0 R " + catalog + " >>", ""};
    std::string kids;
    for (int i = 0; i < count; ++i) {
        kids += std::to_string(3 + i) + " 0 R ";
        objects.push_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 " + std::to_string(100 + 10 * i) + "] " +
                          extra + " >>");
    }
    objects[1] = "<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(count) + " >>";
    return objects;
}

/** Subscriptions for the life of the object; what was told stands in `told` as "number:name". */
class Listener {
public:
    Listener() {
        for (const int number :
             {SCAppFrontDocDidChange, SCDocDidActivate, SCDocDidDeactivate, SCDocWillClose, SCDocDidClose})
            add(number, reinterpret_cast<KRProc>(&onView));
        add(SCDocDidOpen, reinterpret_cast<KRProc>(&onOpen));
        add(SCPageViewDidChange, reinterpret_cast<KRProc>(&onPageView));
    }
    ~Listener() {
        for (const auto &s : subscriptions) SCAppUnregisterNotification(s->number, 0, s->proc, s.get());
    }
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    void name(SCDoc view, const std::string &text) {
        names.emplace_back(view, text);
    }
    std::string take() {
        return std::exchange(told, {});
    }

    std::string told;
    std::function<void(int number, SCDoc view)> react;

private:
    struct Subscription {
        Listener *listener;
        int number;
        KRProc proc;
    };

    void add(int number, KRProc proc) {
        subscriptions.push_back(std::make_unique<Subscription>(Subscription{this, number, proc}));
        SCAppRegisterNotification(number, 0, proc, subscriptions.back().get());
    }
    void tell(int number, SCDoc view, const std::string &extra) {
        std::string text = view == nullptr ? "-" : "?";
        for (const auto &[known, name] : names) {
            if (known == view) text = name;
        }
        told += (told.empty() ? "" : " ") + std::to_string(number) + ":" + text + extra;
        if (react) react(number, view);
    }
    static void onView(SCDoc view, void *data) {
        const auto *s = static_cast<Subscription *>(data);
        s->listener->tell(s->number, view, "");
    }
    static void onOpen(SCDoc view, KRErrorCode error, void *data) {
        static_cast<Subscription *>(data)->listener->tell(SCDocDidOpen, view, error != 0 ? "!" : "");
    }
    static void onPageView(SCPageView view, std::int16_t how, void *data) {
        static_cast<Subscription *>(data)->listener->tell(SCPageViewDidChange, SCPageViewGetDoc(view),
                                                          "/" + std::to_string(how));
    }

    std::vector<std::unique_ptr<Subscription>> subscriptions;
    std::vector<std::pair<SCDoc, std::string>> names;
};

} // namespace viewtest
