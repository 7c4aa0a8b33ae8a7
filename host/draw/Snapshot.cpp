// Writes one-page PDFs as text, object by object, from the PDF library's view of the user's document.
//
//     file    = header object* xref trailer
//     objects = 1 catalog, 2 page tree, 3 page, 4 own content; from 5 on copies, numbered in the order of being met
//
// 1. Copying is a work list, not a recursion: a chain of references may be as long as the file.
// 2. Other pages, the page tree and the catalog are not followed (a null stands for them), so that a resource that
//    leads back into the document does not bring it along.
// 3. The same objects give the same bytes: the caches compare outlines.
// SPDX-License-Identifier: MIT
#include "draw/Snapshot.h"

#include <cmath>
#include <cstdio>
#include <deque>
#include <map>
#include <optional>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <set>
#include <vector>

#include "doc/Document.h"
#include "doc/Pages.h"
#include "kernel/Atoms.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "lex/LexApi.h"
#include "lex/LexObjects.h"
#include "lex/Store.h"

namespace jackdaw {

namespace {

constexpr int s_catalogNumber = 1;
constexpr int s_treeNumber = 2;
constexpr int s_pageNumberInFile = 3;
constexpr int s_contentNumber = 4;
constexpr int s_firstCopy = 5;

/** Keys that lead from an appearance into the rest of the document and do not show. */
const std::set<std::string> &unseenKeys() {
    static const std::set<std::string> s_keys{"/Length",       "/Parent",   "/StructParent", "/StructParents",
                                              "/PieceInfo",    "/Metadata", "/AF",           "/F",
                                              "/LastModified", "/OPI"};
    return s_keys;
}

bool leadsIntoDocument(QPDFObjectHandle h) {
    if (!h.isDictionary() || !h.hasKey("/Type")) return false;
    QPDFObjectHandle type = h.getKey("/Type");
    if (!type.isName()) return false;
    const std::string name = type.getName();
    return name == "/Page" || name == "/Pages" || name == "/Catalog";
}

class SnapshotWriter {
public:
    explicit SnapshotWriter(SnapshotForm form) : form_(form), out_("%PDF-1.7\n"), offsets_(s_firstCopy, 0) {}

    void begin(int number) {
        offsets_[number] = out_.size();
        out_ += std::to_string(number) + " 0 obj\n";
    }
    void end() {
        out_ += "\nendobj\n";
    }
    void text(const std::string &text) {
        out_ += text;
    }
    /** ` /Key value`, or nothing for a null. */
    void entry(const char *key, QPDFObjectHandle value) {
        if (value.isNull()) return;
        out_ += ' ';
        out_ += key;
        out_ += ' ';
        put(value, 0);
    }
    /** `value ` */
    void element(const QPDFObjectHandle &value) {
        put(value, 0);
        out_ += ' ';
    }
    /** The number under which a stream is copied, as a form XObject. */
    int copyForm(const QPDFObjectHandle &stream) {
        appearance_ = stream.getObjGen();
        return numberOf(stream);
    }
    void reference(int number) {
        out_ += std::to_string(number) + " 0 R";
    }

    std::string finish() {
        copyPending();
        const std::size_t xref = out_.size();
        out_ += "xref\n0 " + std::to_string(offsets_.size()) + "\n0000000000 65535 f \n";
        for (std::size_t i = 1; i < offsets_.size(); ++i) {
            char line[32];
            if (offsets_[i] == 0)
                std::snprintf(line, sizeof line, "0000000000 00000 f \n");
            else
                std::snprintf(line, sizeof line, "%010zu 00000 n \n", offsets_[i]);
            out_ += line;
        }
        out_ += "trailer\n<< /Size " + std::to_string(offsets_.size()) + " /Root 1 0 R >>\nstartxref\n" +
                std::to_string(xref) + "\n%%EOF\n";
        return std::move(out_);
    }

private:
    int numberOf(const QPDFObjectHandle &h) {
        const auto [place, isNew] = numbers_.try_emplace(h.getObjGen(), static_cast<int>(offsets_.size()));
        if (isNew) {
            offsets_.push_back(0);
            pending_.push_back(h);
        }
        return place->second;
    }

    void put(const QPDFObjectHandle &h, int depth) {
        const bool known = h.isIndirect() && numbers_.count(h.getObjGen()) > 0;
        if (depth > LimitOf(Limit::DrawnDepth) || (!known && leadsIntoDocument(h)))
            out_ += "null";
        else if (!h.isIndirect())
            putDirect(h, depth);
        else if (known || std::ssize(numbers_) < LimitOf(Limit::DrawnObjects))
            reference(numberOf(h));
        else
            out_ += "null";
    }

    void putDirect(QPDFObjectHandle h, int depth) {
        switch (h.getTypeCode()) {
        case ::ot_dictionary:
            out_ += "<<";
            for (const auto &[key, value] : h.getDictAsMap()) putEntry(key, value, depth);
            out_ += " >>";
            break;
        case ::ot_array:
            out_ += '[';
            for (const QPDFObjectHandle &item : h.getArrayAsVector()) {
                put(item, depth + 1);
                out_ += ' ';
            }
            out_ += ']';
            break;
        case ::ot_boolean:
        case ::ot_integer:
        case ::ot_real:
        case ::ot_string:
        case ::ot_name:
            out_ += h.unparseResolved();
            break;
        default:
            out_ += "null";
            break;
        }
    }

    void putEntry(const std::string &key, const QPDFObjectHandle &value, int depth) {
        out_ += ' ' + QPDFObjectHandle::newName(key).unparse() + ' ';
        put(value, depth + 1);
    }

    void copyPending() {
        while (!pending_.empty()) {
            QPDFObjectHandle h = pending_.front();
            pending_.pop_front();
            begin(numbers_.at(h.getObjGen()));
            if (h.isStream())
                putStream(h);
            else
                putDirect(h, 0);
            end();
        }
    }

    void putStream(QPDFObjectHandle h) {
        const bool isForm = appearance_.has_value() && *appearance_ == h.getObjGen();
        const std::string data = form_ == SnapshotForm::Outline ? std::to_string(h.getObjectID()) : rawData(h);
        out_ += "<<";
        if (isForm) out_ += " /Type /XObject /Subtype /Form";
        for (const auto &[key, value] : h.getDict().getDictAsMap()) {
            const bool own = isForm && (key == "/Type" || key == "/Subtype");
            if (!own && unseenKeys().count(key) == 0) putEntry(key, value, 0);
        }
        out_ += " /Length " + std::to_string(data.size()) + " >>\nstream\n";
        out_ += data;
        out_ += "\nendstream";
    }

    /** A stream that the file cannot give is drawn as an empty one. */
    static std::string rawData(QPDFObjectHandle &h) {
        try {
            const std::shared_ptr<Buffer> raw = h.getRawStreamData();
            return {reinterpret_cast<const char *>(raw->getBuffer()), raw->getSize()};
        } catch (const std::runtime_error &) {
            return {};
        }
    }

    SnapshotForm form_;
    std::string out_;
    /** By number; 0 for one not written. */
    std::vector<std::size_t> offsets_;
    std::map<QPDFObjGen, int> numbers_;
    std::deque<QPDFObjectHandle> pending_;
    std::optional<QPDFObjGen> appearance_;
};

std::string number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.6f", value);
    return text;
}

std::string box(double left, double bottom, double right, double top) {
    return "[" + number(left) + " " + number(bottom) + " " + number(right) + " " + number(top) + "]";
}

QPDFObjectHandle handleOf(LexObj obj) {
    return lex::LibraryHandle(obj);
}

void writeCatalog(SnapshotWriter &w, LexDoc doc) {
    w.begin(s_catalogNumber);
    w.text("<< /Type /Catalog /Pages 2 0 R");
    const LexObj layers = lex::DictGet(lex::RootOf(doc), AtomFromText("OCProperties"));
    if (lex::IsDict(layers)) w.entry("/OCProperties", handleOf(layers));
    w.text(" >>");
    w.end();
    w.begin(s_treeNumber);
    w.text("<< /Type /Pages /Kids [3 0 R] /Count 1 >>");
    w.end();
}

// Appearances.

struct Box {
    double left, bottom, right, top;
};

/** `count` numbers of an array; nothing for anything else. */
std::optional<std::vector<double>> numbersOf(QPDFObjectHandle h, int count) {
    if (!h.isArray() || h.getArrayNItems() < count) return std::nullopt;
    std::vector<double> values;
    for (int i = 0; i < count; ++i) {
        QPDFObjectHandle item = h.getArrayItem(i);
        if (!item.isNumber()) return std::nullopt;
        const double value = item.getNumericValue();
        if (!std::isfinite(value)) return std::nullopt;
        values.push_back(value);
    }
    return values;
}

/** The upright box around BBox through Matrix; nothing when it is empty or beyond what can be drawn. */
std::optional<Box> transformedBox(QPDFObjectHandle dict) {
    constexpr double smallest = 1e-3;
    constexpr double greatest = 1e6;
    const auto b = numbersOf(dict.getKey("/BBox"), 4);
    if (!b) return std::nullopt;
    const std::vector<double> m = numbersOf(dict.getKey("/Matrix"), 6).value_or(std::vector<double>{1, 0, 0, 1, 0, 0});
    Box result{greatest, greatest, -greatest, -greatest};
    for (const int i : {0, 2}) {
        for (const int j : {1, 3}) {
            const double x = m[0] * (*b)[i] + m[2] * (*b)[j] + m[4];
            const double y = m[1] * (*b)[i] + m[3] * (*b)[j] + m[5];
            result = {std::fmin(result.left, x), std::fmin(result.bottom, y), std::fmax(result.right, x),
                      std::fmax(result.top, y)};
        }
    }
    const auto outside = [](double v) { return !(std::fabs(v) < greatest); };
    if (outside(result.left) || outside(result.right) || outside(result.bottom) || outside(result.top)) return {};
    if (result.right - result.left < smallest || result.top - result.bottom < smallest) return std::nullopt;
    return result;
}

/** Catalog and tree, and of the page what tells its size and its place. */
void beginPage(SnapshotWriter &w, DMPage page) {
    const KRFixedRect crop = PageCropBox(page);
    writeCatalog(w, DocLex(PageDoc(page)));
    w.begin(s_pageNumberInFile);
    w.text("<< /Type /Page /Parent 2 0 R /MediaBox ");
    w.text(box(crop.left / 65536.0, crop.bottom / 65536.0, crop.right / 65536.0, crop.top / 65536.0));
    w.text(" /Rotate " + std::to_string(PageRotate(page)));
}

} // namespace

std::string PageSnapshot(DMPage page, SnapshotForm form) {
    const LexObj dict = PageLex(page);
    SnapshotWriter w(form);
    beginPage(w, page);
    // Of another type the library would refuse the page for it, and with it the annotations.
    const LexObj resources = InheritedPageValue(dict, AtomFromText("Resources"));
    if (lex::IsDict(resources)) w.entry("/Resources", handleOf(resources));
    const LexObj contents = lex::DictGet(dict, AtomFromText("Contents"));
    if (lex::IsStream(contents) || lex::IsArray(contents)) w.entry("/Contents", handleOf(contents));
    const LexObj group = lex::DictGet(dict, AtomFromText("Group"));
    if (lex::IsDict(group)) w.entry("/Group", handleOf(group));
    w.text(" >>");
    w.end();
    return w.finish();
}

std::string AnnotsSnapshot(DMPage page, std::span<const LexObj> annots, SnapshotForm form) {
    SnapshotWriter w(form);
    beginPage(w, page);
    w.text(" /Annots [");
    for (const LexObj annot : annots) w.element(handleOf(annot));
    w.text("] >>");
    w.end();
    return w.finish();
}

std::string AppearanceSnapshot(LexObj stream, LexObj optionalContent, SnapshotForm form) {
    if (!lex::IsStream(stream)) return {};
    QPDFObjectHandle appearance = handleOf(stream);
    const std::optional<Box> b = transformedBox(appearance.getDict());
    if (!b) return {};
    const bool layered = lex::IsDict(optionalContent);
    const std::string content = layered ? "/OC /Layer BDC /X Do EMC" : "/X Do";
    SnapshotWriter w(form);
    writeCatalog(w, lex::DocOf(stream));
    w.begin(s_pageNumberInFile);
    const double width = b->right - b->left;
    const double height = b->top - b->bottom;
    w.text("<< /Type /Page /Parent 2 0 R /MediaBox " +
           box(b->left - width, b->bottom - height, b->right + width, b->top + height));
    w.text(" /Contents 4 0 R /Resources << /XObject << /X ");
    w.reference(w.copyForm(appearance));
    w.text(" >>");
    if (layered) {
        w.text(" /Properties <<");
        w.entry("/Layer", handleOf(optionalContent));
        w.text(" >>");
    }
    w.text(" >> >>");
    w.end();
    w.begin(s_contentNumber);
    w.text("<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content + "\nendstream");
    w.end();
    return w.finish();
}

} // namespace jackdaw
