// Objects by path and as texts.
// SPDX-License-Identifier: MIT
#include "tests/support/Objects.h"

#include <map>
#include <sstream>

#include "KernelSupportHFT.h"

namespace {

std::string Bytes(LexObj string) {
    std::int32_t length = 0;
    const char *const bytes = LexStringValue(string, &length);
    return {bytes, static_cast<std::size_t>(length)};
}

std::string Inner(LexObj obj) {
    const std::int32_t type = LexObjGetType(obj);
    if (type == LexString) return "(" + Bytes(obj) + ")";
    if (type == LexStream) return "S";
    return LexObjIsIndirect(obj) && (type == LexArray || type == LexDict) ? "R" : Text(obj);
}

std::string ArrayText(LexObj array) {
    std::string text;
    for (std::int32_t i = 0; i < LexArrayLength(array); ++i) text += (i ? " " : "") + Inner(LexArrayGet(array, i));
    return "[" + text + "]";
}

std::string DictText(LexObj dict) {
    const LexEnumProc collect = [](LexObj key, LexObj value, void *text) -> KRBool {
        *static_cast<std::string *>(text) += Text(key) + " " + Inner(value) + " ";
        return true;
    };
    std::string text = "<< ";
    LexObjEnum(dict, collect, &text);
    return text + ">>";
}

} // namespace

LexObj At(LexObj from, const std::string &path) {
    std::istringstream parts(path);
    for (std::string part; std::getline(parts, part, '/');) {
        const std::int32_t type = LexObjGetType(from);
        if (type == LexArray)
            from = LexArrayGet(from, std::stoi(part));
        else if (type == LexDict || type == LexStream)
            from = LexDictGet(from, Atom(part));
        else
            return LexNullObj;
    }
    return from;
}

std::string Text(LexObj obj) {
    switch (LexObjGetType(obj)) {
    case LexNull:
        return "null";
    case LexInteger:
        return std::to_string(LexIntegerValue(obj));
    case LexFixed: {
        char text[32];
        KRFixedToCString(LexFixedValue(obj), text, sizeof text, /*precision*/ 4);
        return text;
    }
    case LexBoolean:
        return LexBooleanValue(obj) ? "true" : "false";
    case LexName:
        return std::string("/") + KRAtomGetString(LexNameValue(obj));
    case LexString:
        return Bytes(obj);
    case LexArray:
        return ArrayText(obj);
    case LexDict:
        return DictText(obj);
    default:
        return DictText(LexStreamDict(obj)) + " stream";
    }
}

std::string Data(LexObj stream, LexStreamMode mode) {
    if (LexObjGetType(stream) != LexStream) return Text(stream);
    const KRStm in = LexStreamOpenStm(stream, mode);
    std::string data;
    char block[512];
    for (std::int32_t got; (got = KRStmRead(block, 1, sizeof block, in)) > 0;)
        data.append(block, static_cast<std::size_t>(got));
    KRStmClose(in);
    return data;
}
