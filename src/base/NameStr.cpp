// NameStr: a field name with inline storage up to 6 bytes.
// SPDX-License-Identifier: MIT
#include "base/NameStr.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"

namespace {

using Translate = void (*)(char *text, std::int32_t size);
using Cut = std::size_t (*)(const char *text, std::size_t size, std::size_t limit);

/** Host text may take four bytes for one of PDFDocEncoding. A zero pair ends the text, in case it is UCS-2. */
void Xlate(NameStr *name, Translate translate, Cut cut) {
    std::string text(NameStrAddr(name), name->len);
    text.resize(4 * std::size_t{name->len} + 2);
    translate(text.data(), static_cast<std::int32_t>(text.size()));
    const std::size_t kept = cut(text.data(), strnlen(text.data(), text.size()), UINT8_MAX);
    NameStrFree(name);
    Str_to_NameStr(static_cast<std::uint8_t>(kept), text.data(), name);
}

std::size_t CutBytes(const char *, std::size_t size, std::size_t limit) {
    return std::min(size, limit);
}

} // namespace

std::uint8_t NameStrLen(const NameStr *name) {
    return name->len;
}

bool IsLongName(const NameStr *name) {
    return name->len + 1u >= sizeof name->text + 1;
}

const char *NameStrAddr(const NameStr *name) {
    return IsLongName(name) ? name->longText : name->text;
}

void NameStrFree(NameStr *name) {
    if (IsLongName(name)) KRIfNotNullFree(name->longText);
    *name = NameStr{};
}

void NameStrCpy(char *target, const NameStr *name) {
    miCopyMem(target, NameStrAddr(name), name->len);
}

void Str_to_NameStr(std::uint8_t len, const char *text, NameStr *out) {
    NameStr name{};
    name.len = len;
    char *target = name.text;
    if (IsLongName(&name)) {
        name.longText = target = static_cast<char *>(KRmalloc(len + std::size_t{1}));
        if (!target) {
            *out = NameStr{};
            return;
        }
    }
    miCopyMem(target, text, len);
    target[len] = 0;
    *out = name;
}

void TSLexStr_to_NameStr(LexObj obj, NameStr *out) {
    *out = NameStr{};
    if (!IsString(obj)) return;
    std::int32_t length = 0;
    const char *bytes = LexStringValue(obj, &length);
    Str_to_NameStr(static_cast<std::uint8_t>(length), bytes, out);
}

void NameStr_to_NameStr(const NameStr *source, NameStr *out) {
    Str_to_NameStr(source->len, NameStrAddr(source), out);
}

bool NameStrEq(const NameStr *a, const NameStr *b) {
    return a->len == b->len && std::memcmp(NameStrAddr(a), NameStrAddr(b), a->len) == 0;
}

void NameStrXlateToPDFDocEncoding(NameStr *name) {
    Xlate(
        name, [](char *text, std::int32_t size) { DMXlateToPDFDoc(text, size); }, &CutBytes);
}

void NameStrXlateToHost(NameStr *name) {
    Xlate(
        name, [](char *text, std::int32_t size) { DMXlateToHost(text, size); }, &miHostCutLength);
}
