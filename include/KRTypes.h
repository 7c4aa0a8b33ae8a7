// The handle types and plain records that the host and its plug-ins share.
//
// A handle is the host's: a plug-in stores it, compares it and passes it back, and never looks inside. Handles of
// two words (LexObj and its thin views) travel by value; their words are compared with the table's own operations.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/** A word that can carry a pointer, a handle or a caller's client data. */
using KRWord = std::uintptr_t;

/** 16-bit true or false, the result of every predicate of a table. */
using KRBool = std::uint16_t;

/** An interned string. Atoms are numbered by the host and live as long as the process. */
using KRAtom = std::uint16_t;
inline constexpr KRAtom KRAtomNull = 0xFFFF;

/** A signed 16.16 number: points on the page, zoom factors, colour components. */
using KRFixed = std::int32_t;
inline constexpr KRFixed KRFixedOne = 0x10000;
constexpr KRFixed KRFixedFromInt(std::int32_t whole) {
    return static_cast<KRFixed>(static_cast<std::uint32_t>(whole) << 16);
}

struct KRFixedPoint {
    KRFixed h, v;
};

/** A rectangle in points. Note the order of the members: a PDF rectangle array has left, bottom, right, top. */
struct KRFixedRect {
    KRFixed left, top, right, bottom;
};

/** x' = a x + c y + e, y' = b x + d y + f. */
struct KRFixedMatrix {
    KRFixed a, b, c, d, e, f;
};
inline constexpr KRFixedMatrix KRFixedMatrixIdentity{KRFixedOne, 0, 0, KRFixedOne, 0, 0};

/** 0 is success. What a table's operation raises is one of the codes of KRErrors.h or a registered one. */
using KRErrorCode = std::int32_t;

// Files and streams of bytes.
using KRFile = struct KRFileRec *;
using KRStm = struct KRStmRec *;
using KRFileSys = struct KRFileSysRec *;
using KRPathName = struct KRPathNameRec *;

/** A table server (a name under which tables are asked for) and a plug-in as the host sees it. */
using KRHFTServer = struct KRHFTServerRec *;
using KRExtension = struct KRExtensionRec *;

/**
 * A PDF object. Two words, of which the second names the document slot: a reference outlives its document without
 * danger and then reads as null. The null object is {0, 0}.
 */
struct LexObj {
    KRWord node, slot;
};

/** The object store of one file: of a PDF document or of an FDF file. */
using LexDoc = struct LexDocRec *;

/** Numbers of LexObjGetType. */
enum LexType : std::int32_t {
    LexNull = 0,
    LexInteger = 1,
    LexFixed = 2,
    LexBoolean = 3,
    LexName = 4,
    LexString = 5,
    LexDict = 6,
    LexArray = 7,
    LexStream = 8
};

using DMDoc = struct DMDocRec *;
using DMPage = struct DMPageRec *;

// Thin views of a LexObj, kept apart so that the compiler sees which is meant.
struct DMAnnot {
    KRWord node, slot;
};
struct DMAction {
    KRWord node, slot;
};
struct DMFileSpec {
    KRWord node, slot;
};
struct DMNameTree {
    KRWord node, slot;
};

using SCDoc = struct SCDocRec *;
using SCPageView = struct SCPageViewRec *;
using SCWindow = struct SCWindowRec *;
using SCMenubar = struct SCMenubarRec *;
using SCMenu = struct SCMenuRec *;
using SCMenuItem = struct SCMenuItemRec *;
using SCToolBar = struct SCToolBarRec *;
using SCToolButton = struct SCToolButtonRec *;
using SCTool = struct SCToolRec *;
using SCCursor = struct SCCursorRec *;

/** A rectangle in device units, y growing downward. */
struct SCRect {
    std::int16_t left, top, right, bottom;
};

/** Numbers of DMColorValue::space. */
enum TSColorSpace : std::int32_t { TSColorTransparent = -1, TSColorGray = 0, TSColorRGB = 1, TSColorCMYK = 2 };

/** A colour of a TSColorSpace; the components of the space, each 0 to 1.0. */
struct DMColorValue {
    std::int32_t space;
    KRFixed value[4];
};
