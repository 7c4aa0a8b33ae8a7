// The document model table: documents, pages, annotations, actions, file specifications, name trees, host text.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

inline KRHFT gDocModelHFT = nullptr;
inline constexpr std::uint32_t DocModelHFTVersion = KRVersion(4, 3);
inline constexpr int DocModelHFTCount = 66;

// Actions: dictionaries with a name `S`; a destination (name, string, array) passes through the handle untouched.

inline constexpr Slot<&gDocModelHFT, 1, KRBool(DMAction action)> DMActionIsValid;
/** The name `S`; KRAtomNull when it is missing. */
inline constexpr Slot<&gDocModelHFT, 2, KRAtom(DMAction action)> DMActionGetSubtype;
inline constexpr Slot<&gDocModelHFT, 3, LexObj(DMAction action)> DMActionGetLexObj;
inline constexpr Slot<&gDocModelHFT, 4, DMAction(LexObj obj)> DMActionFromLexObj;

// Annotations. Setters send the two notifications around the change themselves.

/** A key of the annotation's dictionary is about to change: notification 40. */
inline constexpr Slot<&gDocModelHFT, 5, void(DMAnnot annot, KRAtom key)> DMAnnotNotifyWillChange;
/** It changed, or failed to with `error`: notification 41. */
inline constexpr Slot<&gDocModelHFT, 6, void(DMAnnot annot, KRAtom key, KRErrorCode error)> DMAnnotNotifyDidChange;
/** A new indirect annotation with `Type`, `Subtype`, `Rect`; not on the page until DMPageAddAnnot. */
inline constexpr Slot<&gDocModelHFT, 7, DMAnnot(DMPage page, KRAtom subtype, const KRFixedRect *rect)>
    DMPageCreateAnnot;
/** A dictionary with a name `Subtype`. */
inline constexpr Slot<&gDocModelHFT, 8, KRBool(DMAnnot annot)> DMAnnotIsValid;
inline constexpr Slot<&gDocModelHFT, 9, KRAtom(DMAnnot annot)> DMAnnotGetSubtype;
/** `Rect` in points, normalised; raises KRErrBadParam when it is no rectangle. */
inline constexpr Slot<&gDocModelHFT, 10, void(DMAnnot annot, KRFixedRect *rect)> DMAnnotGetRect;
inline constexpr Slot<&gDocModelHFT, 11, void(DMAnnot annot, const KRFixedRect *rect)> DMAnnotSetRect;
inline constexpr Slot<&gDocModelHFT, 12, KRBool(DMAnnot a, DMAnnot b)> DMAnnotEqual;
inline constexpr Slot<&gDocModelHFT, 13, LexObj(DMAnnot annot)> DMAnnotGetLexObj;
inline constexpr Slot<&gDocModelHFT, 14, DMAnnot(LexObj obj)> DMAnnotFromLexObj;
/** Bits of `F`. */
enum DMAnnotFlag : std::uint32_t {
    /** An annotation whose subtype the viewer does not know is not shown. */
    DMAnnotInvisible = 0x1,
    /** Neither shown nor printed, and takes no clicks. */
    DMAnnotHidden = 0x2,
    DMAnnotPrint = 0x4,
    DMAnnotNoZoom = 0x8,
    DMAnnotNoRotate = 0x10,
    /** Not shown on the screen, but printed with DMAnnotPrint. */
    DMAnnotNoView = 0x20,
    DMAnnotReadOnly = 0x40,
    DMAnnotLocked = 0x80
};
/** `F`, a sum of DMAnnotFlag; 0 when absent. */
inline constexpr Slot<&gDocModelHFT, 15, std::uint32_t(DMAnnot annot)> DMAnnotGetFlags;
inline constexpr Slot<&gDocModelHFT, 16, void(DMAnnot annot, std::uint32_t flags)> DMAnnotSetFlags;

// Documents.

/**
 * Opens a PDF. `password` is null or a NUL-terminated one; an encrypted document opens with the empty password too.
 * Raises KRErrBadPDF, KRErrPassword and the file errors. The same file opened again gives the same document, with one
 * more reference; DMDocClose gives one up.
 */
inline constexpr Slot<&gDocModelHFT, 17, DMDoc(KRFileSys fs, KRPathName path, const char *password)> DMDocOpen;
/** Bits of `saveFlags`. A full rewrite renumbers objects: references stay good, object identities in a file do not. */
enum DMDocSaveFlags : std::uint32_t {
    DMDocSaveFull = 0x04,
    DMDocSaveCopy = 0x08,
    /** Raises KRErrBadPDF, with nothing saved, when DMDocEnumDamage would tell anything. */
    DMDocSaveSound = 0x10
};
/** What notifications 56 and 33 carry: the second word's low byte holds DMDocSaveFlags. */
struct DMDocSaveRecord {
    std::uint32_t size;
    std::uint8_t flags;
    KRFileSys fileSys;
    KRPathName path;
};
/**
 * Saves to `path` as a new file renamed into place, so that the former file is untouched on every failure; null means
 * the document's own file. Without DMDocSaveFull the host may append; today it always rewrites. Sends 56 and 33. Raises
 * KRErrFileIO or KRErrNoMemory, with nothing saved, when an object could not be read from the document's file, another
 * program wrote to that file, or memory ran out since the document was opened.
 */
inline constexpr Slot<&gDocModelHFT, 18, void(DMDoc doc, std::uint32_t saveFlags, KRFileSys fs, KRPathName path)>
    DMDocSave;
inline constexpr Slot<&gDocModelHFT, 19, void(DMDoc doc)> DMDocClose;
/** Bits of a document's flags; the others are the host's. */
enum DMDocFlag : std::uint32_t {
    /** Something changed since the document was opened or saved. */
    DMDocDirty = 0x1
};
/** A sum of DMDocFlag. */
inline constexpr Slot<&gDocModelHFT, 20, std::uint32_t(DMDoc doc)> DMDocGetFlags;
/** Sets the bits that are 1 in `flags`. */
inline constexpr Slot<&gDocModelHFT, 21, void(DMDoc doc, std::uint32_t flags)> DMDocSetFlags;
/** Clears the bits that are 1 in `flags`. */
inline constexpr Slot<&gDocModelHFT, 22, void(DMDoc doc, std::uint32_t flags)> DMDocClearFlags;
inline constexpr Slot<&gDocModelHFT, 23, LexDoc(DMDoc doc)> DMDocGetLexDoc;
/** Null for an FDF or a closed document. */
inline constexpr Slot<&gDocModelHFT, 24, DMDoc(LexDoc doc)> DMDocFromLexDoc;
/** The open file, the host's; null when the document came from standard input. */
inline constexpr Slot<&gDocModelHFT, 25, KRFile(DMDoc doc)> DMDocGetFile;
inline constexpr Slot<&gDocModelHFT, 26, std::int32_t(DMDoc doc)> DMDocGetNumPages;
/** Page by index from 0; the caller releases it. Raises KRErrBadParam outside the document. */
inline constexpr Slot<&gDocModelHFT, 27, DMPage(DMDoc doc, std::int32_t index)> DMDocAcquirePage;
/** Text of an `Info` entry as bytes (PDFDocEncoding or marked UCS-2) into `buffer`; gives its full length. */
inline constexpr Slot<&gDocModelHFT, 28, std::int32_t(DMDoc doc, const char *key, char *buffer, std::int32_t size)>
    DMDocGetInfo;
inline constexpr Slot<&gDocModelHFT, 29, void(DMDoc doc, const char *key, const char *bytes, std::int32_t length)>
    DMDocSetInfo;
/** The permissions that are read. */
enum DMPermission : std::uint32_t {
    DMPermissionChange = 0x8,
    /** Annotations may be changed and fields filled in. */
    DMPermissionFillIn = 0x20,
    DMPermissionAll = 0x8000
};
/** A sum of DMPermission and bits that nobody reads: all are set without encryption, and for the document's owner. */
inline constexpr Slot<&gDocModelHFT, 30, std::uint32_t(DMDoc doc)> DMDocGetPermissions;
/** Makes the object document writable. `load` 1 reads what changes need, `flags` is 0. */
inline constexpr Slot<&gDocModelHFT, 31, void(DMDoc doc, KRBool load, std::uint32_t flags)> DMDocEnsureWrite;

// Host text. Lengths are bytes. A character that the target lacks becomes a bullet (PDFDocEncoding) or "?" (host).

/** In place, NUL-terminated, never longer than `size`. */
inline constexpr Slot<&gDocModelHFT, 32, void(char *text, std::int32_t size)> DMXlateToPDFDoc;
inline constexpr Slot<&gDocModelHFT, 33, void(char *text, std::int32_t size)> DMXlateToHost;
/** Host text to PDFDocEncoding, or to marked UCS-2 when that loses; gives the bytes written, without terminator. */
inline constexpr Slot<&gDocModelHFT, 34, std::int32_t(const char *source, char *target, std::int32_t size)>
    DMXlateFromHostEnc;
inline constexpr Slot<&gDocModelHFT, 35,
                      std::int32_t(const char *source, std::int32_t length, char *target, std::int32_t size)>
    DMXlateToHostEnc;
/** BaseTool converter of an encoding by its locale name ("UTF-8"); null names the process's own. Null when unknown. */
inline constexpr Slot<&gDocModelHFT, 36, void *(const char *encoding)> DMHostEncodingIsKnown;

// Pages. A page is acquired and released.

inline constexpr Slot<&gDocModelHFT, 37, DMPage(DMPage page)> DMPageAcquireAgain;
inline constexpr Slot<&gDocModelHFT, 38, void(DMPage page)> DMPageRelease;
inline constexpr Slot<&gDocModelHFT, 39, DMDoc(DMPage page)> DMPageGetDoc;
inline constexpr Slot<&gDocModelHFT, 40, LexObj(DMPage page)> DMPageGetLexObj;
/** Acquires the page of a page dictionary; raises KRErrBadParam when it is no page of its document. */
inline constexpr Slot<&gDocModelHFT, 41, DMPage(LexObj obj)> DMPageFromLexObj;
/** Index from 0. */
inline constexpr Slot<&gDocModelHFT, 42, std::int32_t(DMPage page)> DMPageGetNumber;
/** `Rotate`, inherited, reduced to 0, 90, 180, 270. */
inline constexpr Slot<&gDocModelHFT, 43, std::int32_t(DMPage page)> DMPageGetRotate;
/** The crop box, inherited, cut to the media box; points. */
inline constexpr Slot<&gDocModelHFT, 44, void(DMPage page, KRFixedRect *box)> DMPageGetBBox;
/** The media box, inherited; 612 by 792 when there is none. */
inline constexpr Slot<&gDocModelHFT, 45, void(DMPage page, KRFixedRect *box)> DMPageGetMediaBox;
/** From page space to the upright page with its crop box's corner at the origin, y upward. */
inline constexpr Slot<&gDocModelHFT, 46, void(DMPage page, KRFixedMatrix *matrix)> DMPageGetDefaultMatrix;
/** An annotation that the file holds directly becomes indirect here. */
inline constexpr Slot<&gDocModelHFT, 47, DMAnnot(DMPage page, std::int32_t index)> DMPageGetAnnot;
/** Places of DMPageAddAnnot beside the indexes of annotations. */
enum DMAnnotPlace : std::int32_t { DMAnnotFirst = -1, DMAnnotLast = -2 };
/** Inserts behind annotation `index`, or at a DMAnnotPlace. Sends 38 before and 39 after. */
inline constexpr Slot<&gDocModelHFT, 48, void(DMPage page, std::int32_t index, DMAnnot annot)> DMPageAddAnnot;
/** Sends 37 before and 42 after. */
inline constexpr Slot<&gDocModelHFT, 49, void(DMPage page, std::int32_t index)> DMPageRemoveAnnot;
/** -1 when the annotation is not on the page. */
inline constexpr Slot<&gDocModelHFT, 50, std::int32_t(DMPage page, DMAnnot annot)> DMPageGetAnnotIndex;
inline constexpr Slot<&gDocModelHFT, 51, std::int32_t(DMPage page)> DMPageGetNumAnnots;

// File specifications: a string or a dictionary with `F`, `UF` or a platform's key, and `FS`.

inline constexpr Slot<&gDocModelHFT, 52, DMFileSpec(LexObj obj)> DMFileSpecFromLexObj;
inline constexpr Slot<&gDocModelHFT, 53, KRFileSys(DMFileSpec spec)> DMFileSpecGetFileSys;
/** Relative to `base` (null: the working folder); the caller releases it. */
inline constexpr Slot<&gDocModelHFT, 54, KRPathName(DMFileSpec spec, KRPathName base)> DMFileSpecAcquirePath;
inline constexpr Slot<&gDocModelHFT, 55, KRBool(DMFileSpec spec)> DMFileSpecIsValid;
/** Device-independent path text, cut to `size`. */
inline constexpr Slot<&gDocModelHFT, 56, void(DMFileSpec spec, KRPathName base, char *buffer, std::int32_t size)>
    DMFileSpecGetDIPath;

// Name trees. Keys are bytes, in byte order.

inline constexpr Slot<&gDocModelHFT, 57, KRBool(DMNameTree tree)> DMNameTreeIsValid;
/** Replaces the value of a key that is there. */
inline constexpr Slot<&gDocModelHFT, 58, void(DMNameTree tree, const char *key, std::int32_t length, LexObj value)>
    DMNameTreePut;
inline constexpr Slot<&gDocModelHFT, 59, KRBool(DMNameTree tree, const char *key, std::int32_t length, LexObj *value)>
    DMNameTreeGet;
/** Nothing when the key is not there. */
inline constexpr Slot<&gDocModelHFT, 60, void(DMNameTree tree, const char *key, std::int32_t length)> DMNameTreeRemove;
using DMNameTreeProc = KRBool (*)(LexObj key, LexObj value, void *clientData);
inline constexpr Slot<&gDocModelHFT, 61, KRBool(DMNameTree tree, DMNameTreeProc proc, void *clientData)> DMNameTreeEnum;
/** The tree under the catalog's `Names`; not valid when it is absent. */
inline constexpr Slot<&gDocModelHFT, 62, DMNameTree(DMDoc doc, KRAtom name)> DMDocGetNameTree;
/** The same, made when absent. */
inline constexpr Slot<&gDocModelHFT, 63, DMNameTree(DMDoc doc, KRAtom name)> DMDocCreateNameTree;

/**
 * Inserts pages `first` to `last` (from 0) of `source` behind page `after` (-1: in front of all). Sends 15 before and
 * 16 after. What the pages inherit becomes their own; annotations come along.
 */
inline constexpr Slot<&gDocModelHFT, 64,
                      void(DMDoc doc, std::int32_t after, DMDoc source, std::int32_t first, std::int32_t last)>
    DMDocInsertPages;
/** Deletes pages `first` to `last`. Sends 21 before and 22 after. Raises KRErrBadParam when no page would be left. */
inline constexpr Slot<&gDocModelHFT, 65, void(DMDoc doc, std::int32_t first, std::int32_t last)> DMDocDeletePages;

using DMDamageProc = void (*)(const char *line, void *clientData);
/**
 * Calls `proc` with a sentence for each thing that was found wrong with the document's file so far and repaired or
 * passed over, in the order of finding; UTF-8 as far as the file's name is. Each call begins with the first again.
 * Raises as DMDocSave does when the document could not be read whole: what it shows then is not to be relied on.
 */
inline constexpr Slot<&gDocModelHFT, 66, void(DMDoc doc, DMDamageProc proc, void *clientData)> DMDocEnumDamage;
