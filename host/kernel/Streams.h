// Streams of bytes, read once from front to back: over memory, over a procedure, over a file, over the host's own
// bytes.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "KernelSupportHFT.h"

/** A stream. What reads it may be the host, so read() throws HostError and never raises. */
struct KRStmRec {
    virtual ~KRStmRec() = default;
    /** At least one byte and at most `size` of them, which is above 0; 0 at the end. */
    virtual std::int64_t read(char *buffer, std::int64_t size) = 0;
};

namespace jackdaw {

/** Over a block that stays the caller's and must outlive the stream. */
KRStm OpenMemoryStream(const void *data, std::int64_t length);
/** Over bytes that the stream owns. */
KRStm OpenOwnedStream(std::string bytes);
/** Over a block that `owner` keeps alive. */
KRStm OpenSharedStream(std::shared_ptr<const void> owner, const void *data, std::int64_t length);
/** Over a source of the host's, such as a decoder: shaped as KRStmRec::read. */
KRStm OpenSourceStream(std::function<std::int64_t(char *buffer, std::int64_t size)> source);
/** Over a plug-in's procedure; a raise in it, -1 or a count out of range is thrown as KRErrBadStream or its own code.
 */
KRStm OpenProcStream(KRStmProc callback, void *clientData);
/** Over an open file from its present position. */
KRStm OpenFileStream(KRFile file);
/** Null allowed. */
void CloseStream(KRStm stream);

/** Skips `start` bytes and gives the following `length`, or all up to the end for -1; fewer when the stream ends.
 *  Throws KRErrBadStream beyond `limit` bytes, and what the stream throws. */
std::string DrainStream(KRStm stream, std::int64_t start, std::int64_t length, std::int64_t limit);

} // namespace jackdaw
