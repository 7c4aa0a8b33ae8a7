// Splicing: a new appearance stream from an old one, with the variable part replaced.
//
// The variable part stands between "/Tx BMC" and "EMC". The new stream is drawn by the host from a byte machine that
// passes the old stream out up to the opening marker, then the new text, then what stands behind the old EMC. Known
// and kept: the search for EMC does not understand strings, so an EMC between blanks inside a literal ends the part.
// SPDX-License-Identifier: MIT
#include "appearance/miCStore.h"
#include "appearance/miCStoreParts.h"

#include <cstring>
#include <string>

#include "Common/src/miLexType.h"
#include "Common/src/miStream.h"
#include "CoreHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "base/FormStr.h"
#include "objects/FixedUtl.h"
#include "objects/FontMgr.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"

namespace {

enum class Phase { Seeking, Inserting, Copying, Done };

struct Splice {
    std::string old;
    std::size_t oldAt = 0;
    const char *fresh = nullptr;
    std::size_t freshLeft = 0;
    std::size_t prefixLength = 0;
    std::size_t matched = 0;
    bool endsBlank = true;
    Phase phase = Phase::Seeking;
};

/** Streams that are shorter hold no appearance. */
constexpr std::int32_t s_shortest = 16;

// The thunk of the operation under way; null between operations.
KRStmProc s_replaceThunk = nullptr;

bool IsBlank(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

// Any blank stands for any other: other writers end the marker's line with a line feed.
bool SameByte(char a, char b) {
    return a == b || (IsBlank(a) && IsBlank(b));
}

// The blank behind the opening marker may be the one in front of EMC: an emptied field has nothing between them.
void SkipOldContent(Splice &splice) {
    static constexpr char s_marker[] = " EMC ";
    std::size_t seen = 1;
    while (splice.oldAt < splice.old.size() && seen < 5) {
        const char c = splice.old[splice.oldAt++];
        if (SameByte(c, s_marker[seen]))
            ++seen;
        else
            seen = IsBlank(c) ? 1 : 0;
    }
}

// The byte is passed out. A mismatch starts again without retrying the byte.
void MatchPrefix(Splice &splice, char byte) {
    if (!SameByte(byte, splice.fresh[splice.matched])) {
        splice.matched = 0;
        return;
    }
    if (++splice.matched < splice.prefixLength) return;
    splice.fresh += splice.prefixLength;
    splice.freshLeft -= splice.prefixLength;
    SkipOldContent(splice);
    splice.phase = Phase::Inserting;
}

// The next byte of the new stream, or -1 when there is none in this phase.
int NextByte(Splice &splice) {
    switch (splice.phase) {
    case Phase::Seeking: {
        if (splice.oldAt == splice.old.size()) {
            splice.phase = Phase::Inserting;
            return -1;
        }
        const char byte = splice.old[splice.oldAt++];
        MatchPrefix(splice, byte);
        return static_cast<unsigned char>(byte);
    }
    case Phase::Inserting:
        if (splice.freshLeft > 0 && *splice.fresh != '\0') {
            --splice.freshLeft;
            return static_cast<unsigned char>(*splice.fresh++);
        }
        splice.phase = Phase::Copying;
        return splice.endsBlank ? -1 : '\n';
    case Phase::Copying:
        if (splice.oldAt == splice.old.size()) {
            splice.phase = Phase::Done;
            return -1;
        }
        return static_cast<unsigned char>(splice.old[splice.oldAt++]);
    case Phase::Done:
        break;
    }
    return -1;
}

std::int32_t StmReplaceProc(char *buffer, std::int32_t size, void *clientData) {
    Splice &splice = *static_cast<Splice *>(clientData);
    std::int32_t written = 0;
    while (written < size - 1 && splice.phase != Phase::Done) {
        const int byte = NextByte(splice);
        if (byte < 0) continue;
        buffer[written] = static_cast<char>(byte);
        splice.endsBlank = IsBlank(buffer[written++]);
    }
    buffer[written] = '\0';
    return written;
}

// End of the text behind its last EMC.
std::size_t FindEnd(const CStore *store) {
    auto end = static_cast<std::size_t>(store->length);
    while (end > 4 && !(IsBlank(store->text[end - 4]) && std::memcmp(store->text + end - 3, "EMC", 3) == 0)) --end;
    return end;
}

// Length of the opening marker with the blank behind it; 0 when there is none.
std::size_t FindPrefix(const CStore *store, std::size_t end) {
    for (std::size_t at = 2; at + 4 < end; ++at) {
        const char *p = store->text + at;
        if (IsBlank(p[0]) && std::memcmp(p + 1, "BMC", 3) == 0 && IsBlank(p[4])) return at + 5;
    }
    return 0;
}

LexObj NewAttributes(LexDoc doc, LexObj oldDict, const CStore *store) {
    if (LexDictKnown(oldDict, Filter_K)) {
        LexObj attributes = LexNewDict(doc, /*indirect*/ false, 1);
        LexDictPut(attributes, Filter_K, TSLexObjCopy(doc, LexDictGet(oldDict, Filter_K), /*shallow*/ false));
        return attributes;
    }
    return store->length > CStorePlainLimit ? CStoreFlateAttributes(doc) : LexNullObj;
}

LexObj NewSplicedStream(LexDoc doc, Splice &splice, LexObj attributes) {
    LexObj stream = LexNullObj;
    s_replaceThunk = PICallback(gExtensionID, &StmReplaceProc);
    KRStm source = nullptr;
    const KRErrorCode code = Protect([&] {
        source = KRProcStmOpen(s_replaceThunk, &splice);
        stream = LexNewStream(doc, /*indirect*/ true, source, /*start*/ -1, /*encode*/ true, attributes, LexNullObj,
                              /*length*/ -1);
    });
    if (source) KRStmClose(source);
    KRCallbackDestroy(reinterpret_cast<KRProc>(s_replaceThunk));
    s_replaceThunk = nullptr;
    RaiseIf(code);
    return stream;
}

// Unlike CStoreSave the box is crossed back for a quarter turn: the frame that stays was drawn in the widget's box.
void PutBox(LexDoc doc, LexObj dict, const CStore *store) {
    KRFixedRect box = store->bbox;
    if (store->rotation == 90 || store->rotation == 270) TSFixedRectSet(&box, 0, 0, store->bbox.top, store->bbox.right);
    TSLexPutRect(doc, dict, BBox_K, &box);
    if (store->rotation == 0) return;
    KRFixedMatrix matrix;
    CStoreGetMatrix(store, &matrix);
    TSLexPutMatrix(doc, dict, Matrix_K, &matrix);
}

// A direct dictionary with the entries of another: what they refer to is shared, not copied into every field.
LexObj CopyOfEntries(LexDoc doc, LexObj dict) {
    LexObj copy = LexNewDict(doc, /*indirect*/ false, 4);
    if (IsDict(dict)) TSLexDictPartialCopy(dict, copy, /*sameDocument*/ true);
    return copy;
}

// The new stream's resources and fonts are its own: the old stream, and what it shares them with, stay as they were.
void PutResources(LexDoc doc, LexObj dict, LexObj oldDict, const TextAppearance *look, LexObj dr) {
    const LexObj old = LexDictGet(oldDict, Resources_K);
    const LexObj resources = CopyOfEntries(doc, IsDict(old) ? old : dr);
    const LexObj font = TSLexDocGetTextFont(doc, look->baseFont);
    if (IsDict(font)) {
        const LexObj fonts = CopyOfEntries(doc, LexDictGet(resources, Font_K));
        LexDictPut(fonts, look->fontResource, font);
        LexDictPut(resources, Font_K, fonts);
    }
    LexDictPut(dict, Resources_K, resources);
}

LexObj Replace(LexObj stream, CStore *store, const TextAppearance *look, LexObj dr) {
    LexDoc doc = LexObjGetDoc(stream);
    Splice splice;
    splice.fresh = store->text;
    splice.freshLeft = FindEnd(store);
    splice.prefixLength = FindPrefix(store, splice.freshLeft);
    if (splice.prefixLength == 0) return LexNullObj;
    splice.old = miStreamData(stream);

    LexObj oldDict = LexStreamDict(stream);
    LexObj fresh = NewSplicedStream(doc, splice, NewAttributes(doc, oldDict, store));
    if (LexStreamLength(fresh) < s_shortest) {
        LexObjDestroy(fresh);
        return LexNullObj;
    }
    LexObj dict = LexStreamDict(fresh);
    LexDictPut(dict, Subtype_K, LexNewName(doc, /*indirect*/ false, Form_K));
    PutBox(doc, dict, store);
    PutResources(doc, dict, oldDict, look, dr);
    return fresh;
}

} // namespace

void CStoreNameSplicedFont(LexObj stream, TextAppearance *look) {
    const LexDoc doc = LexObjGetDoc(stream);
    const LexObj font = TSLexDocGetTextFont(doc, look->baseFont);
    const LexObj resources = TSLexDictGetOfType(LexStreamDict(stream), Resources_K, LexDict);
    const LexObj fonts = TSLexDictGetOfType(resources, Font_K, LexDict);
    if (!IsDict(fonts)) return;
    const std::string name = KRAtomGetString(look->fontResource);
    for (int number = 1; LexDictKnown(fonts, look->fontResource); ++number) {
        if (LexObjEqual(LexDictGet(fonts, look->fontResource), font)) return;
        look->fontResource = KRAtomFromString((name + "_" + std::to_string(number)).c_str());
    }
}

LexObj CStoreReplace(LexObj stream, CStore *store, const TextAppearance *look, LexObj dr) {
    if (store->length == 0) {
        CStoreVariableData(store, Tx_K);
        CStoreVariableData(store, KRAtomNull);
    }
    if (store->length == 0) return LexNullObj;
    LexObj result = LexNullObj;
    Protect([&] { result = Replace(stream, store, look, dr); });
    return result;
}
