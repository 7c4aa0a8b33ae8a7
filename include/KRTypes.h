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
/** No atom: an absent name or type. Never given out for a text. */
inline constexpr KRAtom KRAtomNull = 0xFFFF;

/** A signed 16.16 number: points on the page, zoom factors, colour components. */
using KRFixed = std::int32_t;
/** 1.0. */
inline constexpr KRFixed KRFixedOne = 0x10000;
/** For whole numbers of -32768 to 32767; what lies beyond loses its high bits. */
constexpr KRFixed KRFixedFromInt(std::int32_t whole) {
    return static_cast<KRFixed>(static_cast<std::uint32_t>(whole) << 16);
}

/** A point on a page, in points: `h` to the right, `v` upward. */
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

// Files and streams of bytes: the operations stand in KernelSupportHFT.h.

/** An open file, with one position for reading and writing. */
using KRFile = struct KRFileRec *;
/** A source of bytes, read once from front to back. */
using KRStm = struct KRStmRec *;
/** A kind of places where files are: the Unix one, or the web. Never given back. */
using KRFileSys = struct KRFileSysRec *;
/** A place in a file system, whether or not there is a file. Whoever got it releases it. */
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

/** Numbers of LexObjGetType. A number of the file is LexInteger without a point and LexFixed with one. */
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

/**
 * A row of a table of limits: a bound on what is taken on from a file. Host and plug-in have a table each (KRLimitGet,
 * TSLimitGet). The texts are the owner's and live as long as it does. 1 is the lowest value of every limit.
 */
struct KRLimit {
    /** As a user writes it: "field-depth". */
    const char *name;
    /** What it bounds, as a phrase for a list. */
    const char *bounds;
    std::int64_t standard;
    /** The one in force. */
    std::int64_t value;
    /** The highest that may be set. */
    std::int64_t highest;
};

/** An open PDF document. Counted: DMDocOpen takes a reference and DMDocClose gives one up. */
using DMDoc = struct DMDocRec *;
/** A page of a document. Counted: what was acquired is released. */
using DMPage = struct DMPageRec *;

// Thin views of a LexObj, kept apart so that the compiler sees which is meant. Making one checks nothing: ask IsValid.

/** An annotation: a dictionary with a name `Subtype`. */
struct DMAnnot {
    KRWord node, slot;
};
/** An action: a dictionary with a name `S`, or a destination in its place. */
struct DMAction {
    KRWord node, slot;
};
/** A file specification: a string, or a dictionary of names for one file. */
struct DMFileSpec {
    KRWord node, slot;
};
/** The root dictionary of a name tree. */
struct DMNameTree {
    KRWord node, slot;
};

// What the viewer shows: the operations stand in ScreenViewHFT.h.

/** A document open in a view, with or without a window. Valid until the view closes. */
using SCDoc = struct SCDocRec *;
/** The part of a view that shows pages. Valid as long as its SCDoc. */
using SCPageView = struct SCPageViewRec *;
/** The window of a view. Null without a desktop. */
using SCWindow = struct SCWindowRec *;
/** The one menu bar, the host's for good. */
using SCMenubar = struct SCMenubarRec *;
/** A menu, and an item of one. Counted: what was made or acquired is released. */
using SCMenu = struct SCMenuRec *;
using SCMenuItem = struct SCMenuItemRec *;
/** The tool bar and a button on it. Null without a desktop. */
using SCToolBar = struct SCToolBarRec *;
using SCToolButton = struct SCToolButtonRec *;
/** What the pointer does in a page view, such as "Hand". */
using SCTool = struct SCToolRec *;
/** A shape of the pointer. Null without a desktop. */
using SCCursor = struct SCCursorRec *;

/** A rectangle in device units of a page view, y growing downward. */
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
