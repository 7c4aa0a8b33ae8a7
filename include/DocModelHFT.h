// The document model table: documents, pages, annotations, actions, file specifications, name trees, host text.
//
// Lengths on a page are points, 16.16. What an operation sends are notifications of ScreenViewNotify.h; those that
// frame a change are sent even where the change then fails, and the second of them carries the code. A handle of a
// closed document or a page that was given back raises KRErrBadParam.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

/** Set by the entry code. */
inline KRHFT gDocModelHFT = nullptr;
inline constexpr std::uint32_t DocModelHFTVersion = KRVersion(4, 3);
inline constexpr int DocModelHFTCount = 66;

// Actions: dictionaries with a name `S`; a destination (name, string, array) passes through the handle untouched.

/** A dictionary with a name `S`. A destination in the place of an action is not valid, and can be performed. */
inline constexpr Slot<&gDocModelHFT, 1, KRBool(DMAction action)> DMActionIsValid;
/** The name `S`, the action's type; KRAtomNull when it is missing. */
inline constexpr Slot<&gDocModelHFT, 2, KRAtom(DMAction action)> DMActionGetSubtype;
/** The object behind the handle, whatever it is; the null object for none. Never raises. */
inline constexpr Slot<&gDocModelHFT, 3, LexObj(DMAction action)> DMActionGetLexObj;
/** The object as an action, unchecked: DMActionIsValid tells. Never raises. */
inline constexpr Slot<&gDocModelHFT, 4, DMAction(LexObj obj)> DMActionFromLexObj;

// Annotations. Setters send the two notifications around the change themselves.

/** For who changes the dictionary without a setter: key `key` is about to change. Sends DMAnnotWillChange. */
inline constexpr Slot<&gDocModelHFT, 5, void(DMAnnot annot, KRAtom key)> DMAnnotNotifyWillChange;
/**
 * It changed (`error` 0), or failed to with the code `error`. Sends DMAnnotDidChange, which
 * follows every DMAnnotWillChange.
 */
inline constexpr Slot<&gDocModelHFT, 6, void(DMAnnot annot, KRAtom key, KRErrorCode error)> DMAnnotNotifyDidChange;
/**
 * A new indirect annotation of the page's document with `Type`, `Subtype` and `Rect` (points); not on the page until
 * DMPageAddAnnot. Raises KRErrBadParam for KRAtomNull.
 */
inline constexpr Slot<&gDocModelHFT, 7, DMAnnot(DMPage page, KRAtom subtype, const KRFixedRect *rect)>
    DMPageCreateAnnot;
/** A dictionary with a name `Subtype`. Never raises. */
inline constexpr Slot<&gDocModelHFT, 8, KRBool(DMAnnot annot)> DMAnnotIsValid;
/** The name `Subtype`, such as "Widget"; KRAtomNull when it is missing. */
inline constexpr Slot<&gDocModelHFT, 9, KRAtom(DMAnnot annot)> DMAnnotGetSubtype;
/** `Rect` in points, left <= right and bottom <= top; raises KRErrBadParam when it is no rectangle. */
inline constexpr Slot<&gDocModelHFT, 10, void(DMAnnot annot, KRFixedRect *rect)> DMAnnotGetRect;
/** Writes `Rect` (points, as given), sending both. Raises KRErrBadParam for what is no annotation. */
inline constexpr Slot<&gDocModelHFT, 11, void(DMAnnot annot, const KRFixedRect *rect)> DMAnnotSetRect;
/** The same dictionary, as LexObjEqual tells. Never raises. */
inline constexpr Slot<&gDocModelHFT, 12, KRBool(DMAnnot a, DMAnnot b)> DMAnnotEqual;
/** The annotation's dictionary; the null object for none. Never raises. */
inline constexpr Slot<&gDocModelHFT, 13, LexObj(DMAnnot annot)> DMAnnotGetLexObj;
/** The object as an annotation, unchecked: DMAnnotIsValid tells. Never raises. */
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
/** `F`, a sum of DMAnnotFlag; 0 when absent, and for what is no annotation. */
inline constexpr Slot<&gDocModelHFT, 15, std::uint32_t(DMAnnot annot)> DMAnnotGetFlags;
/** Writes `F`, sending both. Raises KRErrBadParam for what is no annotation. */
inline constexpr Slot<&gDocModelHFT, 16, void(DMAnnot annot, std::uint32_t flags)> DMAnnotSetFlags;

// Documents. A document lives as long as it has references: views hold one, and so does whoever opened it.

/**
 * Opens a PDF, without a view. `password` is null or a NUL-terminated one; an encrypted document opens with the empty
 * password too. Raises KRErrBadPDF, KRErrPassword and the file errors. The same file opened again gives the same
 * document, with one more reference; the caller gives it up with DMDocClose.
 */
inline constexpr Slot<&gDocModelHFT, 17, DMDoc(KRFileSys fs, KRPathName path, const char *password)> DMDocOpen;
/** Bits of `saveFlags`. A full rewrite renumbers objects: references stay good, object identities in a file do not. */
enum DMDocSaveFlags : std::uint32_t {
    /** Write the file anew instead of appending to it. */
    DMDocSaveFull = 0x04,
    /** The document stays that of its own file, as dirty as before. Saving onto the own file is no copy. */
    DMDocSaveCopy = 0x08,
    /** Raises KRErrBadPDF, with nothing saved, when DMDocEnumDamage would tell anything. */
    DMDocSaveSound = 0x10
};
/** What DMDocWillSave carries; the host's, for the time of the call. */
struct DMDocSaveRecord {
    std::uint32_t size;
    /** DMDocSaveFlags, as the host understood them. */
    std::uint8_t flags;
    /** Where the file will stand; both null for a save to a stream. */
    KRFileSys fileSys;
    KRPathName path;
};
/**
 * Saves to `path` as a new file renamed into place, so that the former file is untouched on every failure; null means
 * the document's own file. Without DMDocSaveFull the host may append; today it always rewrites. Sends
 * DMDocWillSave and DMDocDidSave. Raises
 * KRErrFileIO or KRErrNoMemory, with nothing saved, when an object could not be read from the document's file, another
 * program wrote to that file, or memory ran out since the document was opened.
 */
inline constexpr Slot<&gDocModelHFT, 18, void(DMDoc doc, std::uint32_t saveFlags, KRFileSys fs, KRPathName path)>
    DMDocSave;
/** Gives up one reference; the last one closes the document, and unsaved changes are lost. */
inline constexpr Slot<&gDocModelHFT, 19, void(DMDoc doc)> DMDocClose;
/** Bits of a document's flags; the others are the host's. */
enum DMDocFlag : std::uint32_t {
    /** Something changed since the document was opened or saved. */
    DMDocDirty = 0x1
};
/** A sum of DMDocFlag. */
inline constexpr Slot<&gDocModelHFT, 20, std::uint32_t(DMDoc doc)> DMDocGetFlags;
/** Sets the bits that are 1 in `flags`, a sum of DMDocFlag. */
inline constexpr Slot<&gDocModelHFT, 21, void(DMDoc doc, std::uint32_t flags)> DMDocSetFlags;
/** Clears the bits that are 1 in `flags`: a change that the user need not save. */
inline constexpr Slot<&gDocModelHFT, 22, void(DMDoc doc, std::uint32_t flags)> DMDocClearFlags;
/** The document's store of objects. It is closed with the document, never by itself. */
inline constexpr Slot<&gDocModelHFT, 23, LexDoc(DMDoc doc)> DMDocGetLexDoc;
/** The open document of a store, without a reference; null for an FDF or a closed document. Never raises. */
inline constexpr Slot<&gDocModelHFT, 24, DMDoc(LexDoc doc)> DMDocFromLexDoc;
/** The open file, the host's, which may be read; null when the document came from standard input. */
inline constexpr Slot<&gDocModelHFT, 25, KRFile(DMDoc doc)> DMDocGetFile;
/** How many pages there are, counted in the page tree, whatever `Count` says. */
inline constexpr Slot<&gDocModelHFT, 26, std::int32_t(DMDoc doc)> DMDocGetNumPages;
/** Page by index from 0; the caller gives it to DMPageRelease. Raises KRErrBadParam outside the document. */
inline constexpr Slot<&gDocModelHFT, 27, DMPage(DMDoc doc, std::int32_t index)> DMDocAcquirePage;
/**
 * Text of the `Info` entry `key`, bytes in PDFDocEncoding or marked UCS-2, cut to `size` with its terminator; gives its
 * full length in bytes, 0 when it is absent or no string. `buffer` may be null for a `size` of 0.
 */
inline constexpr Slot<&gDocModelHFT, 28, std::int32_t(DMDoc doc, const char *key, char *buffer, std::int32_t size)>
    DMDocGetInfo;
/** Stores `length` bytes (PDFDocEncoding or marked UCS-2) as that entry; none removes it. */
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
/** Makes the object document writable. `load` 1 reads what changes need, `flags` is 0. Makes nothing dirty. */
inline constexpr Slot<&gDocModelHFT, 31, void(DMDoc doc, KRBool load, std::uint32_t flags)> DMDocEnsureWrite;

// Host text, the encoding of the process's locale. Lengths and sizes are bytes, and a result is cut to `size` at a
// whole character. A character that the target lacks becomes a bullet (PDFDocEncoding) or "?" (host).

/** Host text to PDFDocEncoding in place: NUL-terminated, with the terminator never longer than `size`. */
inline constexpr Slot<&gDocModelHFT, 32, void(char *text, std::int32_t size)> DMXlateToPDFDoc;
/** PDFDocEncoding to host text in place, likewise. */
inline constexpr Slot<&gDocModelHFT, 33, void(char *text, std::int32_t size)> DMXlateToHost;
/**
 * Host text to PDFDocEncoding, or to marked UCS-2 when that loses; gives the bytes written, without the terminator: one
 * zero byte, and two where there is room.
 */
inline constexpr Slot<&gDocModelHFT, 34, std::int32_t(const char *source, char *target, std::int32_t size)>
    DMXlateFromHostEnc;
/** The other way, from `length` bytes in PDFDocEncoding or marked UCS-2; gives the bytes written, likewise. */
inline constexpr Slot<&gDocModelHFT, 35,
                      std::int32_t(const char *source, std::int32_t length, char *target, std::int32_t size)>
    DMXlateToHostEnc;
/** The BaseToolConverter of an encoding by its locale name ("UTF-8"; null: the process's own); null when unknown. */
inline constexpr Slot<&gDocModelHFT, 36, void *(const char *encoding)> DMHostEncodingIsKnown;

// Pages. A page is acquired and released. A page that was deleted keeps its handle until then, as an empty one.

/** One more reference to the page, to be released; gives the page. */
inline constexpr Slot<&gDocModelHFT, 37, DMPage(DMPage page)> DMPageAcquireAgain;
/** Gives up a reference. A page of a document that was closed meanwhile is left alone. */
inline constexpr Slot<&gDocModelHFT, 38, void(DMPage page)> DMPageRelease;
/** The page's document, without a reference. */
inline constexpr Slot<&gDocModelHFT, 39, DMDoc(DMPage page)> DMPageGetDoc;
/** The page dictionary; reads as null once the page is deleted. */
inline constexpr Slot<&gDocModelHFT, 40, LexObj(DMPage page)> DMPageGetLexObj;
/** Acquires the page of a page dictionary, to be released. Raises KRErrBadParam when it is none of its document. */
inline constexpr Slot<&gDocModelHFT, 41, DMPage(LexObj obj)> DMPageFromLexObj;
/** Index from 0; -1 for a deleted page. */
inline constexpr Slot<&gDocModelHFT, 42, std::int32_t(DMPage page)> DMPageGetNumber;
/** `Rotate`, inherited, reduced to 0, 90, 180 or 270 degrees clockwise. */
inline constexpr Slot<&gDocModelHFT, 43, std::int32_t(DMPage page)> DMPageGetRotate;
/** The crop box, inherited, cut to the media box, which stands in for a missing or empty one; points. */
inline constexpr Slot<&gDocModelHFT, 44, void(DMPage page, KRFixedRect *box)> DMPageGetBBox;
/** The media box, inherited; 612 by 792 when there is none, or an empty one; points. */
inline constexpr Slot<&gDocModelHFT, 45, void(DMPage page, KRFixedRect *box)> DMPageGetMediaBox;
/** From page space to the upright page with its crop box's corner at the origin, y upward. */
inline constexpr Slot<&gDocModelHFT, 46, void(DMPage page, KRFixedMatrix *matrix)> DMPageGetDefaultMatrix;
/**
 * Annotation by index from 0, in the order of drawing. One that the file holds directly becomes indirect here. An
 * element of `Annots` that is no annotation is given all the same: DMAnnotIsValid tells. Raises KRErrBadParam outside
 * the list.
 */
inline constexpr Slot<&gDocModelHFT, 47, DMAnnot(DMPage page, std::int32_t index)> DMPageGetAnnot;
/** Places of DMPageAddAnnot beside the indexes of annotations. */
enum DMAnnotPlace : std::int32_t {
    /** Below all others. */
    DMAnnotFirst = -1,
    /** Above all others. */
    DMAnnotLast = -2
};
/**
 * Inserts behind annotation `index`, or at a DMAnnotPlace, and sets `P`. Sends DMPageWillAddAnnot and
 * DMPageDidAddAnnot. Raises
 * KRErrBadParam for an annotation of another document and a page that was deleted.
 */
inline constexpr Slot<&gDocModelHFT, 48, void(DMPage page, std::int32_t index, DMAnnot annot)> DMPageAddAnnot;
/**
 * Takes the annotation off the page; its object lives on. Sends DMPageWillRemoveAnnot and DMPageDidRemoveAnnot. Raises
 * KRErrBadParam outside the list.
 */
inline constexpr Slot<&gDocModelHFT, 49, void(DMPage page, std::int32_t index)> DMPageRemoveAnnot;
/** The first index of the annotation; -1 when it is not on the page. */
inline constexpr Slot<&gDocModelHFT, 50, std::int32_t(DMPage page, DMAnnot annot)> DMPageGetAnnotIndex;
/** Elements of `Annots`, valid ones or not; 0 when there is none. */
inline constexpr Slot<&gDocModelHFT, 51, std::int32_t(DMPage page)> DMPageGetNumAnnots;

// File specifications: a string or a dictionary with `UF`, `F` or a platform's key, the first of which speaks, and
// `FS`.

/** The object as a file specification, unchecked: DMFileSpecIsValid tells. Never raises. */
inline constexpr Slot<&gDocModelHFT, 52, DMFileSpec(LexObj obj)> DMFileSpecFromLexObj;
/** The file system that `FS` names, the default one without it; null for a name that nobody registered. */
inline constexpr Slot<&gDocModelHFT, 53, KRFileSys(DMFileSpec spec)> DMFileSpecGetFileSys;
/**
 * Its path, relative to `base` (null: the working folder), for the caller to give to KRFileSysReleasePath; null when it
 * names none.
 */
inline constexpr Slot<&gDocModelHFT, 54, KRPathName(DMFileSpec spec, KRPathName base)> DMFileSpecAcquirePath;
/** It names something. */
inline constexpr Slot<&gDocModelHFT, 55, KRBool(DMFileSpec spec)> DMFileSpecIsValid;
/** Its device-independent path in host text, made absolute by `base` unless that is null, cut to `size`. */
inline constexpr Slot<&gDocModelHFT, 56, void(DMFileSpec spec, KRPathName base, char *buffer, std::int32_t size)>
    DMFileSpecGetDIPath;

// Name trees. Keys are bytes, in byte order, `length` of them. A tree that a file has out of order is read all the same
// and brought into order by the first change. A tree that is not valid raises KRErrBadParam.

/** There is a tree: its root is a dictionary. Never raises. */
inline constexpr Slot<&gDocModelHFT, 57, KRBool(DMNameTree tree)> DMNameTreeIsValid;
/** Stores a value, in place of a former one. Raises KRErrBadParam for null and for a value of another document. */
inline constexpr Slot<&gDocModelHFT, 58, void(DMNameTree tree, const char *key, std::int32_t length, LexObj value)>
    DMNameTreePut;
/** Finds a key: true, and the value in `*value`; false, and the null object. */
inline constexpr Slot<&gDocModelHFT, 59, KRBool(DMNameTree tree, const char *key, std::int32_t length, LexObj *value)>
    DMNameTreeGet;
/** Takes a key and its value out of the tree; nothing when the key is not there. */
inline constexpr Slot<&gDocModelHFT, 60, void(DMNameTree tree, const char *key, std::int32_t length)> DMNameTreeRemove;
/** One entry: `key` is a string object. False ends the walk. */
using DMNameTreeProc = KRBool (*)(LexObj key, LexObj value, void *clientData);
/**
 * Walks the entries in the order of the tree, as they were at the start. False when `proc` ended it; true for a tree
 * that is not valid. Raises what `proc` raises.
 */
inline constexpr Slot<&gDocModelHFT, 61, KRBool(DMNameTree tree, DMNameTreeProc proc, void *clientData)> DMNameTreeEnum;
/** The tree of this name under the catalog's `Names`; not valid when it is absent. */
inline constexpr Slot<&gDocModelHFT, 62, DMNameTree(DMDoc doc, KRAtom name)> DMDocGetNameTree;
/** The same, made when absent. Raises KRErrBadParam for KRAtomNull. */
inline constexpr Slot<&gDocModelHFT, 63, DMNameTree(DMDoc doc, KRAtom name)> DMDocCreateNameTree;

// Whole pages.

/**
 * Inserts copies of pages `first` to `last` (from 0) of `source` behind page `after` (-1: in front of all). Sends
 * DMDocWillInsertPages before and 16 after. What the pages inherit becomes their own; annotations come along. Raises
 * KRErrBadParam for numbers outside either document.
 */
inline constexpr Slot<&gDocModelHFT, 64,
                      void(DMDoc doc, std::int32_t after, DMDoc source, std::int32_t first, std::int32_t last)>
    DMDocInsertPages;
/**
 * Deletes pages `first` to `last` (from 0), and whatever refers to them reads null. Sends DMDocWillDeletePages and
 * DMDocDidDeletePages. Raises KRErrBadParam for numbers outside the document, and when no page would be left.
 */
inline constexpr Slot<&gDocModelHFT, 65, void(DMDoc doc, std::int32_t first, std::int32_t last)> DMDocDeletePages;

/** One finding: `line` is a sentence without a line end, the host's for the time of the call. */
using DMDamageProc = void (*)(const char *line, void *clientData);
/**
 * Calls `proc` with a sentence for each thing that was found wrong with the document's file so far and repaired or
 * passed over, in the order of finding; UTF-8 as far as the file's name is. Each call begins with the first again.
 * Raises as DMDocSave does when the document could not be read whole: what it shows then is not to be relied on.
 */
inline constexpr Slot<&gDocModelHFT, 66, void(DMDoc doc, DMDamageProc proc, void *clientData)> DMDocEnumDamage;
