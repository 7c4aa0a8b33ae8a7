// The document store: opening, making, saving and closing the files whose objects the object layer shows.
//
// Opening tries again what can be repaired: a PDF cut before its trailer or without its startxref, an FDF without a
// trailer. Saving always writes the whole file anew, keeps encryption, object streams and the raw bytes of streams,
// and puts the new file in place of the old one only when it is complete. The file that a document was opened from
// must not be overwritten in place while it is open: what has not been asked for is read from it later.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <string>
#include <sys/types.h>
#include <vector>

#include "KRTypes.h"

namespace jackdaw::lex {

/**
 * Opens a PDF file by its Unix path. `password` is the user's or the owner's; null and "" are the empty one. Throws
 * HostError with KRErrFileNotFound, KRErrFileOpen, KRErrPassword or KRErrBadPDF and a sentence that names file, object
 * and offset.
 */
LexDoc OpenPdfFile(const std::string &path, const char *password);
/** The same from memory; `name` stands for the file in messages. */
LexDoc OpenPdfBytes(const std::string &name, std::string bytes, const char *password);

/** Opens an FDF; throws HostError{KRErrNotFDF} unless "%FDF-" stands within the first 1024 bytes. */
LexDoc OpenFdfBytes(const std::string &name, std::string bytes);
/** Reads the whole file first: it may be a temporary one that goes away while the document is open. */
LexDoc OpenFdf(KRFileSys fs, KRPathName path);

/** A new object document with an empty root dictionary. */
LexDoc CreateFdf();

/** All references to its objects read as null from now on. Null allowed. */
void CloseStore(LexDoc doc);

/** A document that is open. */
bool IsOpenStore(LexDoc doc);
/** Made here as FDF or opened from one. */
bool IsFdf(LexDoc doc);

/** Whether a save goes ahead for a document whose file was damaged. */
enum class Damage { Tolerated, Refused };

/**
 * Writes a new file and renames it into place, with no more rights for others than the file that the document came
 * from. Throws HostError: KRErrDiskFull, KRErrFileIO, KRErrFileOpen, KRErrNoMemory, or KRErrBadPDF for a document
 * without a catalog and for one with damage that is refused. Nothing is put into place when anything that the document
 * holds could not be read, or memory ran out since it was opened.
 */
void SaveStore(LexDoc doc, const std::string &path, Damage damage = Damage::Tolerated);
/** Writes to an open file, such as standard output, which stays the caller's; it is flushed. */
void SaveStoreTo(LexDoc doc, std::FILE *file);
std::string SaveStoreToString(LexDoc doc);
/** Slot LexDocSaveToFile: into any file system. Only for FDF. */
void SaveFdf(LexDoc doc, KRFileSys fs, KRPathName path);

/** What the opening found out. */
struct OpenFacts {
    std::string name;
    /** Mode bits of the file, beyond which a new file with its content does not go. */
    mode_t rights = 0666;
    /** The cross references were rebuilt, or one of the retries was needed. */
    bool repaired = false;
    bool encrypted = false;
    /** The password opened it as the owner. False without encryption. */
    bool owner = false;
};
const OpenFacts &FactsOf(LexDoc doc);

/** Permission bits as DMDocGetPermissions hands them out: all ones for the owner and without encryption. */
std::uint32_t PermissionsOf(LexDoc doc);

/**
 * What was found wrong with the file, from its opening on and with what was read since: a sentence each, which names
 * the file and often object and offset. Slips that lose nothing are left out. Throws HostError when the document is not
 * what its file holds: KRErrFileIO when reading failed or the file was changed, KRErrNoMemory.
 */
std::vector<std::string> DamageOf(LexDoc doc);

LexObj RootOf(LexDoc doc);
LexObj TrailerOf(LexDoc doc);

} // namespace jackdaw::lex
