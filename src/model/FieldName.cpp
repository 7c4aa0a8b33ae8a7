// Full names: what a title stands for, and how the titles of a path make a name.
// SPDX-License-Identifier: MIT
#include "model/FieldName.h"

#include <cstring>
#include <string_view>

#include "Common/src/miEStr.h"
#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "base/Limits.h"
#include "base/NameStr.h"
#include "model/NameHash.h"
#include "objects/LexUtil.h"

namespace {

/** Bytes of a title that are taken. */
constexpr std::size_t MaxTitleLength = 253;

void SetText(FieldName *name, std::string_view text) {
    name->length = std::min(text.size(), MaxTitleLength);
    std::memcpy(name->text, text.data(), name->length);
    name->text[name->length] = '\0';
}

bool IsMarked(std::string_view bytes) {
    return bytes.size() >= 2 && bytes[0] == '\xFE' && bytes[1] == '\xFF';
}

/** The ASCII text of marked UCS-2, the usual case; false when there is more in it. */
bool TakeAscii(std::string_view marked, FieldName *name) {
    char text[MaxTitleLength];
    std::size_t length = 0;
    for (std::size_t i = 2; i + 1 < marked.size() && length < MaxTitleLength; i += 2) {
        if (marked[i] != 0 || marked[i + 1] < 0x20 || marked[i + 1] == 0x7F) return false;
        text[length++] = marked[i + 1];
    }
    SetText(name, {text, length});
    return true;
}

void AppendUTF8(std::string *out, std::uint32_t code) {
    if (code < 0x80) {
        out->push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        out->push_back(static_cast<char>(0xC0 | code >> 6));
        out->push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
        out->push_back(static_cast<char>(0xE0 | code >> 12));
        out->push_back(static_cast<char>(0x80 | (code >> 6 & 0x3F)));
        out->push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
        out->push_back(static_cast<char>(0xF0 | code >> 18));
        out->push_back(static_cast<char>(0x80 | (code >> 12 & 0x3F)));
        out->push_back(static_cast<char>(0x80 | (code >> 6 & 0x3F)));
        out->push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
}

/** UTF-8 of marked UCS-2, cut behind a whole character. A zero unit ends the text; a name cannot hold it. */
std::string UTF8OfMarked(std::string_view marked) {
    std::string text;
    const auto unitAt = [&](std::size_t i) -> std::uint32_t {
        if (i + 1 >= marked.size()) return 0;
        return static_cast<unsigned char>(marked[i]) << 8 | static_cast<unsigned char>(marked[i + 1]);
    };
    for (std::size_t i = 2; std::uint32_t code = unitAt(i); i += 2) {
        const std::uint32_t low = unitAt(i + 2);
        if (code >= 0xD800 && code < 0xDC00 && low >= 0xDC00 && low < 0xE000) {
            code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
            i += 2;
        }
        const std::size_t before = text.size();
        AppendUTF8(&text, code);
        if (text.size() > MaxTitleLength) {
            text.resize(before);
            break;
        }
    }
    return text;
}

void TakeMarked(std::string_view marked, FieldName *name) {
    if (TakeAscii(marked, name)) return;
    const EStrPtr text(EStrNewImpl(nullptr, EStrUCS2));
    EStrSetBytesSized(text.get(), marked.data(), marked.size(), EStrUCS2);
    EStrSetEncoding(text.get(), EStrText);
    if (EStrGetEncoding(text.get()) == EStrPDFDoc)
        SetText(name, EStrGetBytes(text.get()));
    else
        SetText(name, UTF8OfMarked(marked));
}

/** A name that is written from its end: climbing meets the last title first. */
class NameFromEnd {
public:
    /** False when the name would become too long. */
    bool Prepend(std::string_view text) {
        if (text.size() > start) return false;
        start -= text.size();
        std::memcpy(buffer + start, text.data(), text.size());
        return true;
    }
    /** Takes the dot back that joined what is there to a name that turned out to be empty. */
    void DropLeadingDot() {
        if (start < MaxFieldNameLength && buffer[start] == '.') ++start;
    }
    void Get(FieldName *name) const {
        name->length = MaxFieldNameLength - start;
        std::memcpy(name->text, buffer + start, name->length);
        name->text[name->length] = '\0';
    }

private:
    char buffer[MaxFieldNameLength];
    std::size_t start = MaxFieldNameLength;
};

/** The bytes are UTF-8 of a text that PDFDocEncoding cannot hold. */
bool HasWideCharacters(std::string_view text) {
    const EStrPtr str(EStrNewFromUTF8(std::string(text).c_str()));
    if (!str) return false;
    EStrSetEncoding(str.get(), EStrText);
    return EStrGetEncoding(str.get()) == EStrUCS2;
}

} // namespace

bool FieldTitleText(LexObj title, FieldName *text) {
    if (!IsString(title)) return false;
    std::int32_t length = 0;
    const char *bytes = LexStringValue(title, &length);
    const std::string_view all(bytes, static_cast<std::size_t>(length));
    if (IsMarked(all))
        TakeMarked(all, text);
    else
        SetText(text, all.substr(0, all.find('\0')));
    return true;
}

LexObj FieldTitleOfText(LexDoc doc, std::string_view text) {
    const EStrPtr title(EStrNewFromUTF8(std::string(text).c_str()));
    // Bytes that are UTF-8 were written so because PDFDocEncoding could not hold them; all others are PDFDocEncoding.
    const bool isUTF8 = title && HasWideCharacters(text);
    if (!isUTF8) return LexNewString(doc, /*indirect*/ false, text.data(), static_cast<std::int32_t>(text.size()));
    EStrSetEncoding(title.get(), EStrText);
    return LexNewString(doc, /*indirect*/ false, EStrGetBytes(title.get()), EStrGetLen(title.get()));
}

bool FormFieldNameAcquire(LexObj dict, FieldName *name) {
    if (!IsDict(dict)) return false;
    NameFromEnd full;
    FieldName title;
    for (int depth = 0; depth <= TSLimitOf(TSLimitFieldDepth); ++depth) {
        const LexObj parent = TSLexDictGetOfType(dict, parent_K, LexDict);
        const bool isRoot = !IsDict(parent);
        if (isRoot || LexDictKnown(dict, T_K)) {
            if (!FieldTitleText(LexDictGet(dict, T_K), &title)) return false;
            const std::string_view text(title.text, title.length);
            if (!isRoot && text.find('.') != std::string_view::npos) KRRaise(KRErrBadResource);
            if (!full.Prepend(text) || (!isRoot && !full.Prepend("."))) return false;
        }
        if (isRoot) {
            full.Get(name);
            return true;
        }
        if (const DMField *record = TSLexObjFindDMField(parent)) {
            if (!full.Prepend({NameStrAddr(record->name), NameStrLen(record->name)})) return false;
            if (NameStrLen(record->name) == 0) full.DropLeadingDot();
            full.Get(name);
            return true;
        }
        dict = parent;
    }
    return false;
}
