// Compares PDF files: pairs of objects wait in a list, so that depth costs no stack.
// SPDX-License-Identifier: MIT
#include "tests/support/PdfObjects.h"

#include <map>
#include <set>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFFormFieldObjectHelper.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

namespace {

using Object = QPDFObjectHandle;

struct Pair {
    Object before, after;
    std::string path;
};

/** What filling a field changes: its value, its selection, what shows them, and the font that it is shown in. */
const std::set<std::string> s_filledKeys = {"/V", "/I", "/TI", "/AP", "/AS", "/DR"};
/** What moves between a field and its parent. */
const std::set<std::string> s_treeKeys = {"/T",  "/Parent", "/Kids", "/FT",  "/Ff", "/V",
                                          "/DV", "/DA",     "/Q",    "/Opt", "/AA"};
/** The form's resources are compared first, under this path. */
const std::string s_resources = "Resources";

std::string StoredBytes(Object &stream) {
    const auto data = stream.getRawStreamData();
    return {reinterpret_cast<const char *>(data->getBuffer()), data->getSize()};
}

class Comparison {
public:
    explicit Comparison(const Allowed &whatMayChange) : allowed(whatMayChange) {}

    void Run(QPDF &before, QPDF &after) {
        waiting = {{before.getRoot(), after.getRoot(), "Root"},
                   {before.getTrailer().getKey("/Info"), after.getTrailer().getKey("/Info"), "Info"},
                   {ResourcesOf(before), ResourcesOf(after), s_resources}};
        while (!waiting.empty()) {
            const Pair pair = waiting.back();
            waiting.pop_back();
            if (!Met(pair)) Compare(pair);
        }
    }

    std::vector<std::string> differences;

private:
    static Object ResourcesOf(QPDF &file) {
        return file.getRoot().getKey("/AcroForm").getKey("/DR");
    }

    void Note(const Pair &pair, const std::string &what) {
        differences.push_back(pair.path + ": " + what);
    }

    // An object of the first file stands for one of the second.
    bool Met(const Pair &pair) {
        if (!pair.before.isIndirect() || !pair.after.isIndirect()) return false;
        const auto [place, fresh] = twins.emplace(pair.before.getObjGen(), pair.after.getObjGen());
        if (!fresh && place->second != pair.after.getObjGen()) Note(pair, "one object became two");
        return !fresh;
    }

    void Compare(const Pair &pair) {
        Object before = pair.before, after = pair.after;
        if (before.isNull() && allowed.field && MayAppear(pair.path)) return;
        if (before.getTypeCode() != after.getTypeCode())
            return Note(pair, std::string(before.getTypeName()) + " became " + after.getTypeName());
        if (before.isStream()) {
            CompareKeys({before.getDict(), after.getDict(), pair.path}, {"/Length"});
            if (StoredBytes(before) != StoredBytes(after)) Note(pair, "other stream data");
        } else if (before.isDictionary()) {
            CompareKeys(pair, Passed(before));
        } else if (before.isArray()) {
            CompareItems(pair);
        } else if (before.unparseResolved() != after.unparseResolved()) {
            Note(pair, before.unparseResolved() + " became " + after.unparseResolved());
        }
    }

    static bool MayAppear(const std::string &path) {
        return path.rfind(s_resources, 0) == 0 || path.rfind("Root/AcroForm/DR", 0) == 0 || path == "Root/AcroForm/DA";
    }

    // Keys of a dictionary that may differ.
    std::set<std::string> Passed(Object &dict) const {
        std::set<std::string> passed;
        if (!allowed.field) return passed;
        const bool isField = dict.hasKey("/FT") || dict.getKey("/Subtype").unparse() == "/Widget";
        if (isField && allowed.field(QPDFFormFieldObjectHelper(dict).getFullyQualifiedName())) passed = s_filledKeys;
        if (isField && allowed.tree) passed.insert(s_treeKeys.begin(), s_treeKeys.end());
        if (dict.hasKey("/Fields")) passed = {"/NeedAppearances"};
        if (dict.hasKey("/Fields") && allowed.tree) passed.insert("/Fields");
        return passed;
    }

    void CompareKeys(const Pair &pair, const std::set<std::string> &passed) {
        Object before = pair.before, after = pair.after;
        std::set<std::string> keys = before.getKeys();
        keys.merge(after.getKeys());
        for (const std::string &key : keys) {
            if (!passed.count(key)) waiting.push_back({before.getKey(key), after.getKey(key), pair.path + key});
        }
    }

    void CompareItems(const Pair &pair) {
        Object before = pair.before, after = pair.after;
        if (before.getArrayNItems() != after.getArrayNItems())
            return Note(pair, before.unparse() + " became " + after.unparse());
        for (int i = 0; i < before.getArrayNItems(); ++i)
            waiting.push_back({before.getArrayItem(i), after.getArrayItem(i), pair.path + "/" + std::to_string(i)});
    }

    const Allowed &allowed;
    std::vector<Pair> waiting;
    std::map<QPDFObjGen, QPDFObjGen> twins;
};

void Open(QPDF &file, const std::string &path) {
    file.setSuppressWarnings(true);
    file.processFile(path.c_str());
}

} // namespace

std::vector<std::string> CompareObjects(const std::string &before, const std::string &after, const Allowed &allowed) {
    QPDF first, second;
    Open(first, before);
    Open(second, after);
    Comparison comparison(allowed);
    comparison.Run(first, second);
    return comparison.differences;
}

bool NeedsAppearances(const std::string &pdf) {
    QPDF file;
    Open(file, pdf);
    Object form = file.getRoot().getKey("/AcroForm");
    return form.isDictionary() && form.getKey("/NeedAppearances").unparse() == "true";
}

std::vector<PageShape> PageShapes(const std::string &pdf) {
    QPDF file;
    Open(file, pdf);
    std::vector<PageShape> shapes;
    for (QPDFPageObjectHelper &page : QPDFPageDocumentHelper(file).getAllPages()) {
        Object turn = page.getAttribute("/Rotate", /*copy_if_shared*/ false);
        const auto box = page.getMediaBox().getArrayAsRectangle();
        shapes.push_back({turn.isInteger() ? turn.getIntValueAsInt() : 0, box.ury - box.lly});
    }
    return shapes;
}
