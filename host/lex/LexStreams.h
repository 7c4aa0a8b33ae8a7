// Stream objects: making them from bytes or a byte stream, reading their data raw and decoded.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "LexHFT.h"

namespace jackdaw::lex {

/**
 * A new stream of `bytes`. With `encode` they are decoded data and are encoded by the `Filter` of `attributes`
 * (FlateDecode, ASCIIHexDecode, ASCII85Decode; a list with any other becomes FlateDecode alone), and `DecodeParms`
 * goes, since no encoder here uses it; otherwise they are stored as they stand, with `encodeParms` as `DecodeParms`. A
 * loose direct dictionary `attributes` becomes the stream's own; one that is held or indirect is copied, without what
 * it refers to.
 */
LexObj NewStream(LexDoc doc, std::string_view bytes, bool encode, LexObj attributes, LexObj encodeParms);

/** Slot LexNewStream: drains `source` before it returns. */
LexObj NewStreamFrom(LexDoc doc, KRStm source, std::int32_t start, bool encode, LexObj attributes, LexObj encodeParms,
                     std::int32_t length);

LexObj StreamDict(LexObj stream);
/** Bytes of the raw data, whatever `Length` says; clamped to 31 bits. */
std::int32_t StreamLength(LexObj stream);
/** Decrypted, still encoded. Throws HostError{KRErrBadStream} when the file cannot give it. */
std::string RawData(LexObj stream);
/** Throws HostError{KRErrBadStream} when it cannot be decoded or passes Limit::StreamBytes. */
std::string DecodedData(LexObj stream);
/** A byte stream over either; the caller closes it. */
KRStm OpenData(LexObj stream, LexStreamMode mode);

} // namespace jackdaw::lex
