// The catalogue: fetching, caching and copying of texts.
// SPDX-License-Identifier: MIT
#include "Common/unix/mdMessages.h"

#include <algorithm>
#include <cstring>
#include <langinfo.h>

#include "Common/src/miEStr.h"
#include "Common/src/miUtils.h"
#include "Common/unix/mdUtils.h"
#include "UnixHFT.h"

namespace {

struct StringRow {
    const char *key;
    const char *text;
};

constexpr StringRow s_stringData[] = {
#define MD_MESSAGE(number, key, text) {#key, text},
#define MD_NO_MESSAGE(number) {"", ""},
    MD_MESSAGE_LIST(MD_MESSAGE, MD_NO_MESSAGE)
#undef MD_MESSAGE
#undef MD_NO_MESSAGE
};
static_assert(sizeof s_stringData / sizeof *s_stringData == Msg::Count);

constexpr int s_rowNumbers[] = {
#define MD_MESSAGE(number, key, text) number,
#define MD_NO_MESSAGE(number) number,
    MD_MESSAGE_LIST(MD_MESSAGE, MD_NO_MESSAGE)
#undef MD_MESSAGE
#undef MD_NO_MESSAGE
};
constexpr bool RowsStandAtTheirNumbers() {
    for (int i = 0; i < Msg::Count; ++i)
        if (s_rowNumbers[i] != i) return false;
    return true;
}
static_assert(RowsStandAtTheirNumbers());

constexpr StringRow s_buttonStringData[] = {
    {"scOKButton", "OK"}, {"scCancelButton", "Cancel"}, {"scYesButton", "Yes"}, {"scNoButton", "No"}};
constexpr std::size_t s_buttonCount = sizeof s_buttonStringData / sizeof *s_buttonStringData;

const char *s_stringCache[Msg::Count];
const char *s_buttonStringCache[s_buttonCount];

/** The catalogue's own texts are UTF-8: in another host encoding, a copy that stays until the process ends. */
const char *DefaultText(const char *text) {
    const bool plain = std::all_of(text, text + std::strlen(text), [](char c) { return (c & 0x80) == 0; });
    if (plain || std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0) return text;
    const EStrPtr str(EStrNewFromUTF8(text));
    EStrSetEncoding(str.get(), EStrHost);
    return str->encoding == EStrHost ? miCopyStrImpl(str->bytes) : text;
}

const char *Fetch(const StringRow &row, const char **cache) {
    if (*cache) return *cache;
    void *shell = mdGetRootWidget();
    const char *text = DefaultText(row.text);
    *cache = shell ? UnixGetResourceString(shell, row.key, text) : text;
    return *cache;
}

bool IsInCatalogue(std::int32_t id) {
    return id >= 0 && id < Msg::Count;
}

} // namespace

const char *mdGetStringKey(std::int32_t id) {
    return IsInCatalogue(id) ? s_stringData[id].key : "";
}

const char *mdGetStringPtr(std::int32_t id) {
    return IsInCatalogue(id) ? Fetch(s_stringData[id], &s_stringCache[id]) : "Bad String ID";
}

const char *mdGetAlertButtonPtr(std::int32_t index) {
    const auto row = static_cast<std::size_t>(index);
    return row < s_buttonCount ? Fetch(s_buttonStringData[row], &s_buttonStringCache[row]) : nullptr;
}

char *mdGetString(std::int32_t id, char *buffer, std::uint16_t size) {
    if (size == 0) return buffer;
    const char *text = mdGetStringPtr(id);
    const std::size_t length = miHostCutLength(text, std::strlen(text), size - 1u);
    std::memcpy(buffer, text, length);
    buffer[length] = 0;
    return buffer;
}

char *mdGetButtonString(std::int32_t id, char *buffer, std::uint16_t size) {
    if (size == 0) return buffer;
    mdGetString(id, buffer, size);
    const char *in = buffer;
    char *out = buffer;
    for (std::size_t left = std::strlen(buffer); left != 0;) {
        // A doubled mark leaves one: the first goes, and what follows it is copied whatever it is.
        if (*in == '&') ++in, --left;
        const std::size_t bytes = miHostCharLength(in, left);
        std::memmove(out, in, bytes);
        out += bytes;
        in += bytes;
        left -= bytes;
    }
    *out = 0;
    return buffer;
}

EStr *EStrNewFromIDImpl(std::int32_t messageNumber) {
    return EStrNewImpl(mdGetStringPtr(messageNumber), EStrHost);
}

void EStrSetBytesFromID(EStr *str, std::int32_t messageNumber) {
    EStrSetBytes(str, mdGetStringPtr(messageNumber), EStrHost);
}
