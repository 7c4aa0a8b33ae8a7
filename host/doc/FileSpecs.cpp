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
    if (lex::typeOf(spec) == LexString) return spec;
    if (lex::typeOf(spec) != LexDict) return lex::nullObj;
    const Keys &k = keys();
    for (const KRAtom key : {k.UF, k.F, k.Unix, k.DOS, k.Mac}) {
        const LexObj text = lex::dictGet(spec, key);
        if (lex::typeOf(text) != LexString || lex::stringValue(text).empty()) continue;
        *isDos = key == k.DOS;
        return text;
    }
    return lex::nullObj;
}

std::string textOf(LexObj spec) {
    bool isDos;
    const LexObj text = speakingString(spec, &isDos);
    if (lex::isNull(text)) return {};
    std::string host = TextStringToHost(lex::stringValue(text));
    if (isDos) std::replace(host.begin(), host.end(), '\\', '/');
    return host;
}

/** A base is a place for relative texts only within its own file system. */
std::string resolved(DMFileSpec spec, KRPathName base) {
    const KRFileSys fs = fileSpecFileSys(spec);
    const std::string text = textOf(fileSpecLex(spec));
    if (fs == nullptr || text.empty()) return {};
    return fs->resolve(text, base != nullptr && base->fileSys == fs ? &base->text : nullptr);
}

} // namespace

bool fileSpecIsValid(DMFileSpec spec) {
    bool isDos;
    return lex::typeOf(speakingString(fileSpecLex(spec), &isDos)) == LexString;
}

KRFileSys fileSpecFileSys(DMFileSpec spec) {
    const LexObj obj = fileSpecLex(spec);
    const KRAtom name = lex::typeOf(obj) == LexDict ? lex::nameOrNone(lex::dictGet(obj, keys().FS)) : KRAtomNull;
    return name == KRAtomNull ? DefaultFileSys() : FileSysFromAtom(name);
}

KRPathName acquireFileSpecPath(DMFileSpec spec, KRPathName base) {
    const std::string path = resolved(spec, base);
    return path.empty() ? nullptr : MakePath(fileSpecFileSys(spec), path);
}

std::string fileSpecDIPath(DMFileSpec spec, KRPathName base) {
    const std::string text = textOf(fileSpecLex(spec));
    const bool standsAlone = base == nullptr || text.empty() || text.front() == '/';
    if (standsAlone) return text;
    const std::string path = resolved(spec, base);
    return path.empty() ? text : path;
}

} // namespace jackdaw
