// The platform layer's small services: the resource shell, assertions, comparison, the cancel request.
// SPDX-License-Identifier: MIT
#include "Common/unix/mdUtils.h"

#include <cctype>
#include <cstdio>

#include "ScreenViewHFT.h"
#include "UnixHFT.h"

namespace {

const mdToolkit *s_toolkit = nullptr;
void *s_rootWidget = nullptr;

/** The catalogue itself holds the defaults. */
constexpr const char *const *s_fallbackResources = nullptr;

int Lower(char character) {
    return std::tolower(static_cast<unsigned char>(character));
}

} // namespace

void mdSetToolkit(const mdToolkit *toolkit) {
    s_toolkit = toolkit;
}

const mdToolkit *mdGetToolkit() {
    return s_toolkit;
}

void *mdInitUtils() {
    void *top = UnixGetTopWidget();
    UnixRegisterResources("Tessella", s_fallbackResources);
    if (top && s_toolkit && !s_rootWidget) s_rootWidget = s_toolkit->createShell(top);
    return s_rootWidget;
}

void mdTermUtils() {
    if (s_rootWidget && s_toolkit) s_toolkit->destroyShell(s_rootWidget);
    s_rootWidget = nullptr;
}

void *mdGetRootWidget() {
    return s_rootWidget;
}

void mdAssert(const char *expression, const char *file, std::int32_t line) {
    std::fprintf(stderr, "Assert %s in file %s, line %d.\n", expression, file, static_cast<int>(line));
}

int mdStricmp(const char *a, const char *b) {
    if (!a) a = "";
    if (!b) b = "";
    while (*a && Lower(*a) == Lower(*b)) ++a, ++b;
    const int order = Lower(*a) - Lower(*b);
    return (order > 0) - (order < 0);
}

bool mdGetCancelState() {
    void *clientData = nullptr;
    const SCCancelProc cancelled = SCAppGetCancelProc(&clientData);
    return cancelled && cancelled(clientData) != 0;
}
