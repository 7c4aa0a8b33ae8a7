// Draws pages and annotations with cairo, and writes images.
// SPDX-License-Identifier: MIT
#include "draw/Render.h"

#include <array>
#include <cairo.h>
#include <cerrno>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "doc/Annots.h"
#include "doc/Document.h"
#include "doc/Pages.h"
#include "kernel/Apart.h"
#include "kernel/AtomicFile.h"
#include "kernel/Atoms.h"
#include "kernel/Files.h"
#include "kernel/Fixed.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "lex/LexObjects.h"
#include "lex/Store.h"

namespace jackdaw {

namespace {

/** The longest side that a cairo image has. */
constexpr double s_maxSide = 32767;

/** What the format defines: flag "invisible" speaks only of others. */
bool isStandardSubtype(std::string_view name) {
    static constexpr std::array<std::string_view, 28> s_names{
        "Text",        "Link",      "FreeText",       "Line",     "Square",    "Circle",     "Polygon",
        "PolyLine",    "Highlight", "Underline",      "Squiggly", "StrikeOut", "Stamp",      "Caret",
        "Ink",         "Popup",     "FileAttachment", "Sound",    "Movie",     "Widget",     "Screen",
        "PrinterMark", "TrapNet",   "Watermark",      "3D",       "Redact",    "Projection", "RichMedia"};
    for (const std::string_view known : s_names) {
        if (known == name) return true;
    }
    return false;
}

/** cairo keeps an error of its own; a context that failed draws no more, which is noticed when the image is written. */
void checkStatus(cairo_status_t status) {
    if (status == CAIRO_STATUS_SUCCESS) return;
    throw HostError{status == CAIRO_STATUS_NO_MEMORY ? KRErrNoMemory : KRErrBadPDF,
                    std::string("Drawing failed: ") + cairo_status_to_string(status) + "."};
}

/** Restores the context's state, whatever is thrown in between. */
class SavedState {
public:
    explicit SavedState(cairo_t *context) : context_(context) {
        cairo_save(context);
    }
    ~SavedState() {
        cairo_restore(context_);
    }
    SavedState(const SavedState &) = delete;
    SavedState &operator=(const SavedState &) = delete;

private:
    cairo_t *context_;
};

/** Draws with the appearance's box as the square from (0, 0) to (1, 1) of the present transformation. */
void drawIntoUnit(cairo_t *context, const OnePage &page) {
    const double width = OnePageWidth(page) / 3;
    const double height = OnePageHeight(page) / 3;
    cairo_scale(context, 1 / width, 1 / height);
    cairo_translate(context, -width, -height);
    DrawOnePage(page, context);
}

bool isDrawable(const cairo_matrix_t &m) {
    const double det = m.xx * m.yy - m.xy * m.yx;
    return std::isfinite(det) && std::fabs(det) > 1e-9;
}

/** Without any appearance, so that the drawing library chooses one. A widget's is the form's to make. */
bool isBare(LexObj annot) {
    if (!AnnotIsShown(annot) || lex::HasKeys(lex::DictGet(annot, AtomFromText("AP")))) return false;
    return lex::NameOrNone(lex::DictGet(annot, AtomFromText("Subtype"))) != AtomFromText("Widget");
}

void drawBareAnnots(cairo_t *context, DMPage page, double scale, std::span<const LexObj> annots) {
    if (annots.empty()) return;
    const OnePagePtr drawn = KeptAnnots(page, annots);
    if (!drawn) return;
    const SavedState state(context);
    cairo_scale(context, scale, scale);
    DrawOnePage(*drawn, context);
}

void drawAnnot(cairo_t *context, const PageGeometry &geometry, LexObj dict) {
    KRFixedRect rect;
    if (!AnnotIsShown(dict) || !ReadRect(lex::DictGet(dict, AtomFromText("Rect")), &rect)) return;
    if (rect.right <= rect.left || rect.top <= rect.bottom) return;
    const OnePagePtr page = KeptAppearance(NormalAppearance(dict), lex::DictGet(dict, AtomFromText("OC")));
    if (!page) return;
    const Affine &m = geometry.toDevice;
    const SavedState state(context);
    const cairo_matrix_t toDevice{m.a, m.b, m.c, m.d, m.e, m.f};
    cairo_transform(context, &toDevice);
    cairo_translate(context, FixedToDouble(rect.left), FixedToDouble(rect.top));
    cairo_scale(context, FixedToDouble(rect.right) - FixedToDouble(rect.left),
                FixedToDouble(rect.bottom) - FixedToDouble(rect.top));
    drawIntoUnit(context, *page);
}

cairo_status_t appendToString(void *closure, const unsigned char *data, unsigned int length) {
    try {
        static_cast<std::string *>(closure)->append(reinterpret_cast<const char *>(data), length);
        return CAIRO_STATUS_SUCCESS;
    } catch (const std::bad_alloc &) {
        return CAIRO_STATUS_NO_MEMORY;
    }
}

/** An image whose pixels child processes share. */
SurfacePtr newImage(const PageGeometry &geometry) {
    // A page of 612.0000001 points is 612 pixels wide.
    const double width = std::max(1.0, std::ceil(geometry.width - 1e-4));
    const double height = std::max(1.0, std::ceil(geometry.height - 1e-4));
    if (!(width <= s_maxSide) || !(height <= s_maxSide) ||
        width * height > static_cast<double>(LimitOf(Limit::RenderPixels)))
        throw HostError{KRErrBadParam, "The image would be " + std::to_string(std::llround(width)) + " by " +
                                           std::to_string(std::llround(height)) +
                                           " pixels, which is more than the limit allows."};
    const int columns = static_cast<int>(width), rows = static_cast<int>(height);
    const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_RGB24, columns);
    auto pixels = std::make_unique<SharedBlock>(static_cast<std::size_t>(stride) * static_cast<std::size_t>(rows));
    SurfacePtr surface(cairo_image_surface_create_for_data(static_cast<unsigned char *>(pixels->data()),
                                                           CAIRO_FORMAT_RGB24, columns, rows, stride));
    checkStatus(cairo_surface_status(surface.get()));
    static const cairo_user_data_key_t s_owner{};
    checkStatus(cairo_surface_set_user_data(surface.get(), &s_owner, pixels.get(),
                                            [](void *block) { delete static_cast<SharedBlock *>(block); }));
    (void)pixels.release();
    return surface;
}

struct ContextFree {
    void operator()(cairo_t *context) const {
        cairo_destroy(context);
    }
};

void paintPage(cairo_surface_t *surface, DMPage page, double scale) {
    const std::unique_ptr<cairo_t, ContextFree> context(cairo_create(surface));
    cairo_set_source_rgb(context.get(), 1, 1, 1);
    cairo_paint(context.get());
    DrawPageContent(context.get(), page, scale);
    DrawPageAnnots(context.get(), page, scale);
    checkStatus(cairo_status(context.get()));
    cairo_surface_flush(surface);
}

} // namespace

void SurfaceFree::operator()(cairo_surface_t *surface) const {
    cairo_surface_destroy(surface);
}

LexObj NormalAppearance(LexObj annot) {
    if (!lex::HasKeys(annot)) return lex::NullObj;
    const LexObj faces = lex::DictGet(annot, AtomFromText("AP"));
    if (!lex::HasKeys(faces)) return lex::NullObj;
    LexObj normal = lex::DictGet(faces, AtomFromText("N"));
    if (lex::IsDict(normal)) {
        const KRAtom state = lex::NameOrNone(lex::DictGet(annot, AtomFromText("AS")));
        normal = state == KRAtomNull ? lex::NullObj : lex::DictGet(normal, state);
    }
    return lex::IsStream(normal) ? normal : lex::NullObj;
}

bool AnnotIsShown(LexObj annot) {
    if (!lex::IsDict(annot)) return false;
    const std::uint32_t flags = AnnotFlags(AnnotFromLex(annot));
    if ((flags & (DMAnnotHidden | DMAnnotNoView)) != 0) return false;
    const std::string_view subtype = AtomText(lex::NameOrNone(lex::DictGet(annot, AtomFromText("Subtype"))));
    if (subtype == "Popup") return false;
    return (flags & DMAnnotInvisible) == 0 || isStandardSubtype(subtype);
}

void DrawAppearance(cairo_t *context, LexObj stream, LexObj optionalContent, const DeviceRect &rect, int pageRotate) {
    const OnePagePtr page = KeptAppearance(stream, optionalContent);
    if (!page || !(rect.right > rect.left) || !(rect.bottom > rect.top)) return;
    const SavedState state(context);
    cairo_translate(context, rect.left, rect.top);
    cairo_scale(context, rect.right - rect.left, rect.bottom - rect.top);
    // The unit square turned clockwise about its middle.
    cairo_matrix_t turn{1, 0, 0, 1, 0, 0};
    if (pageRotate == 90) turn = {0, 1, -1, 0, 1, 0};
    if (pageRotate == 180) turn = {-1, 0, 0, -1, 1, 1};
    if (pageRotate == 270) turn = {0, -1, 1, 0, 0, 1};
    cairo_transform(context, &turn);
    drawIntoUnit(context, *page);
}

void DrawPageContent(cairo_t *context, DMPage page, double scale) {
    const OnePagePtr content = KeptPage(page);
    const SavedState state(context);
    cairo_scale(context, scale, scale);
    DrawOnePage(*content, context);
}

void DrawPageAnnots(cairo_t *context, DMPage page, double scale) {
    const PageGeometry geometry = GeometryOfPage(page, scale);
    cairo_matrix_t present;
    cairo_get_matrix(context, &present);
    if (!isDrawable(present)) return;
    const SavedState state(context);
    cairo_rectangle(context, 0, 0, geometry.width, geometry.height);
    cairo_clip(context);
    // Those that are bare and follow each other are drawn together, so that a thousand links are opened once.
    std::vector<LexObj> bare;
    const std::int32_t count = NumAnnots(page);
    for (std::int32_t i = 0; i < count; ++i) {
        const LexObj annot = AnnotLex(PageAnnot(page, i));
        if (isBare(annot)) {
            bare.push_back(annot);
            continue;
        }
        drawBareAnnots(context, page, scale, std::exchange(bare, {}));
        drawAnnot(context, geometry, annot);
    }
    drawBareAnnots(context, page, scale, bare);
}

SurfacePtr RenderPage(DMDoc doc, std::int32_t page, std::int32_t dpi) {
    if (dpi < 1) throw HostError{KRErrBadParam, "The resolution must be 1 dpi at least."};
    const PageRef shown(AcquirePage(doc, page));
    const double scale = dpi / 72.0;
    SurfacePtr surface = newImage(GeometryOfPage(shown.get(), scale));
    cairo_surface_flush(surface.get());
    const std::string what = "Page " + std::to_string(page + 1) + " cannot be drawn: it";
    const ApartBounds bounds{LimitOf(Limit::DrawSeconds), LimitOf(Limit::DrawBytes)};
    RunApart(what, bounds, [&] { paintPage(surface.get(), shown.get(), scale); });
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

std::string PngOf(cairo_surface_t *surface) {
    std::string bytes;
    checkStatus(cairo_surface_write_to_png_stream(surface, &appendToString, &bytes));
    return bytes;
}

void RenderPageToFile(DMDoc doc, std::int32_t page, std::int32_t dpi, KRFileSys fs, KRPathName path) {
    const std::string png = PngOf(RenderPage(doc, page, dpi).get());
    AtomicFile file(UnixPathOf(fs, path), lex::FactsOf(DocLex(doc)).rights);
    file.write(png.data(), png.size());
    file.commit();
}

void RenderPageToStream(DMDoc doc, std::int32_t page, std::int32_t dpi, std::FILE *stream) {
    const std::string png = PngOf(RenderPage(doc, page, dpi).get());
    if (std::fwrite(png.data(), 1, png.size(), stream) != png.size() || std::fflush(stream) != 0)
        throw HostError{errno == ENOSPC ? KRErrDiskFull : KRErrFileIO, "The image cannot be written."};
}

} // namespace jackdaw
