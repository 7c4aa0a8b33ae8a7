// What an object is. Null reads as null; a reference is what it refers to.
// SPDX-License-Identifier: MIT
#pragma once

#include "LexHFT.h"

inline bool IsNull(LexObj obj) {
    return LexObjGetType(obj) == LexNull;
}
inline bool IsBoolean(LexObj obj) {
    return LexObjGetType(obj) == LexBoolean;
}
inline bool IsInteger(LexObj obj) {
    return LexObjGetType(obj) == LexInteger;
}
inline bool IsFixed(LexObj obj) {
    return LexObjGetType(obj) == LexFixed;
}
inline bool IsName(LexObj obj) {
    return LexObjGetType(obj) == LexName;
}
inline bool IsString(LexObj obj) {
    return LexObjGetType(obj) == LexString;
}
inline bool IsArray(LexObj obj) {
    return LexObjGetType(obj) == LexArray;
}
/** A stream is no dictionary here: TSLexObjIsDictLike takes both. */
inline bool IsDict(LexObj obj) {
    return LexObjGetType(obj) == LexDict;
}
inline bool IsStream(LexObj obj) {
    return LexObjGetType(obj) == LexStream;
}
