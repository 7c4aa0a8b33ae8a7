// Which entry of a file specification speaks, and where it leads.
// SPDX-License-Identifier: MIT
#include "doc/FileSpecs.h"

#include <algorithm>

#include "doc/Keys.h"
#include "kernel/Files.h"
#include "kernel/HostError.h"
#include "lex/LexObjects.h"
#include "siblings/TextConvert.h"

namespace jackdaw {
namespace {

/** The string that speaks: the text in Unicode before the older one, then what single platforms wrote. */
LexObj speakingString(LexObj spec, bool *isDos) {
    *isDos = false;
    if (lex::IsString(spec)) return spec;
    if (!lex::IsDict(spec)) return lex::NullObj;
    const KeyAtoms &k = Keys();
    for (const KRAtom key : {k.UF, k.F, k.Unix, k.DOS, k.Mac}) {
        const LexObj text = lex::DictGet(spec, key);
        if (!lex::IsString(text) || lex::StringValue(text).empty()) continue;
        *isDos = key == k.DOS;
        return text;
    }
    return lex::NullObj;
}

std::string textOf(LexObj spec) {
    bool isDos;
    const LexObj text = speakingString(spec, &isDos);
    if (lex::IsNull(text)) return {};
    std::string host = TextStringToHost(lex::StringValue(text));
    if (isDos) std::replace(host.begin(), host.end(), '\\', '/');
    return host;
}

/** A base is a place for relative texts only within its own file system. */
std::string resolved(DMFileSpec spec, KRPathName base) {
    const KRFileSys fs = FileSpecFileSys(spec);
    const std::string text = textOf(FileSpecLex(spec));
    if (!fs || text.empty()) return {};
    return fs->resolve(text, base && base->fileSys == fs ? &base->text : nullptr);
}

} // namespace

bool FileSpecIsValid(DMFileSpec spec) {
    bool isDos;
    return lex::IsString(speakingString(FileSpecLex(spec), &isDos));
}

KRFileSys FileSpecFileSys(DMFileSpec spec) {
    const LexObj obj = FileSpecLex(spec);
    const KRAtom name = lex::IsDict(obj) ? lex::NameOrNone(lex::DictGet(obj, Keys().FS)) : KRAtomNull;
    return name == KRAtomNull ? DefaultFileSys() : FileSysFromAtom(name);
}

KRPathName AcquireFileSpecPath(DMFileSpec spec, KRPathName base) {
    const std::string path = resolved(spec, base);
    return path.empty() ? nullptr : MakePath(FileSpecFileSys(spec), path);
}

std::string FileSpecDIPath(DMFileSpec spec, KRPathName base) {
    const std::string text = textOf(FileSpecLex(spec));
    const bool standsAlone = !base || text.empty() || text.front() == '/';
    if (standsAlone) return text;
    const std::string path = resolved(spec, base);
    return path.empty() ? text : path;
}

} // namespace jackdaw
