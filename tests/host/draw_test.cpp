// Our drawing of annotated pages against the drawing library's own of the same file, and what is left out of it.
// SPDX-License-Identifier: MIT
#include "draw/Draw.h"

#include <cairo.h>
#include <cstdlib>
#include <gtest/gtest.h>
#include <poppler.h>

#include "doc/Annots.h"
#include "doc/Document.h"
#include "doc/Pages.h"
#include "draw/Render.h"
#include "draw/Snapshot.h"
#include "kernel/Atoms.h"
#include "kernel/Files.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "lex/LexApi.h"
#include "lex/LexObjects.h"
#include "lex/LexStreams.h"
#include "tests/support/HostFixture.h"

using namespace jackdaw;

namespace {

std::string stream(const std::string &dict, const std::string &data) {
    return "<< " + dict + " /Length " + std::to_string(data.size()) + " >>\nstream\n" + data + "\nendstream";
}

std::string form(const std::string &entries, const std::string &content) {
    return stream(
        "/Type /XObject /Subtype /Form /Resources << /Font << /F 5 0 R /Z 6 0 R >> /ExtGState << /G << /ca 0.5 "
        ">> >> >> " +
            entries,
        content);
}

/** Text stands clear of half pixels, where a glyph goes to the one or the other pixel by a last bit. */
constexpr const char *picture = "0.8 0.9 1 rg 0 0 100 40 re f 1 0 0 RG 3 w 5 5 90 30 re S "
                                "BT /F 14 Tf 0 0 0 rg 8.3 14.2 Td (Office) Tj ET BT /Z 12 Tf 70.3 14.2 Td (4) Tj ET";

/** Catalog, one page with `pageEntries`, two fonts, then pairs of annotation and appearance. */
struct PageFile {
    std::vector<std::string> objects{
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 /MediaBox [0 0 300 200] /Resources << /Font << /F 5 0 R >> >> >>",
        "",
        stream("", "0.2 0.6 0.2 rg 20 20 60 30 re f BT /F 18 Tf 0 g 30.2 150.3 Td (Page text) Tj ET"),
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
        "<< /Type /Font /Subtype /Type1 /BaseFont /ZapfDingbats >>",
    };
    std::string annots, pageEntries;

    void add(const std::string &annot, const std::string &appearance) {
        const std::size_t number = objects.size() + 1;
        objects.push_back("<< /Type /Annot /AP << /N " + std::to_string(number + 1) + " 0 R >> " + annot + " >>");
        objects.push_back(appearance);
        annots += std::to_string(number) + " 0 R ";
    }
    std::vector<std::string> finished() const {
        std::vector<std::string> result = objects;
        result[2] = "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Annots [" + annots + "] " + pageEntries + " >>";
        return result;
    }
};

/** Offset and swapped boxes, turned and scaled matrices, stretched rectangles, half transparency. */
PageFile mixedPage(const std::string &pageEntries) {
    PageFile file;
    file.pageEntries = pageEntries;
    file.add("/Subtype /Stamp /Rect [20 60 120 100]", form("/BBox [0 0 100 40]", picture));
    file.add("/Subtype /Stamp /Rect [150 60 280 80]", form("/BBox [100 40 0 0]", picture));
    file.add("/Subtype /Stamp /Rect [150 90 170 190]", form("/BBox [0 0 100 40] /Matrix [0 1 -1 0 0 0]", picture));
    file.add("/Subtype /Stamp /Rect [180 90 280 190]", form("/BBox [0 0 100 40] /Matrix [.7 .7 -.7 .7 9 -4]", picture));
    file.add("/Subtype /Stamp /Rect [90 20 130 50]", form("/BBox [20 10 80 30] /Matrix [2 0 0 3 0 0]", picture));
    file.add("/Subtype /Stamp /Rect [30 140 140 170]",
             form("/BBox [0 0 100 40] /Group << /S /Transparency >>", std::string("/G gs ") + picture));
    return file;
}

struct Pixels {
    int width, height;
    std::vector<std::uint32_t> rgb;
};

Pixels pixelsOf(cairo_surface_t *surface) {
    cairo_surface_flush(surface);
    Pixels result{cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface), {}};
    for (int y = 0; y < result.height; ++y) {
        const auto *row = reinterpret_cast<const std::uint32_t *>(
            cairo_image_surface_get_data(surface) + std::ptrdiff_t{y} * cairo_image_surface_get_stride(surface));
        for (int x = 0; x < result.width; ++x) result.rgb.push_back(row[x] & 0xFFFFFF);
    }
    return result;
}

/** The whole file in the drawing library, annotations drawn by it. */
Pixels reference(const std::string &pdf, int width, int height, double scale) {
    GBytes *bytes = g_bytes_new(pdf.data(), pdf.size());
    PopplerDocument *document = poppler_document_new_from_bytes(bytes, nullptr, nullptr);
    PopplerPage *page = poppler_document_get_page(document, 0);
    const SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    cairo_t *context = cairo_create(surface.get());
    cairo_set_source_rgb(context, 1, 1, 1);
    cairo_paint(context);
    cairo_scale(context, scale, scale);
    poppler_page_render(page, context);
    cairo_destroy(context);
    g_object_unref(page);
    g_object_unref(document);
    g_bytes_unref(bytes);
    return pixelsOf(surface.get());
}

int differing(const Pixels &a, const Pixels &b) {
    int count = 0;
    for (std::size_t i = 0; i < a.rgb.size(); ++i) {
        for (const int shift : {0, 8, 16}) {
            const int da = static_cast<int>(a.rgb[i] >> shift & 0xFF);
            const int db = static_cast<int>(b.rgb[i] >> shift & 0xFF);
            if (std::abs(da - db) <= 2) continue;
            ++count;
            break;
        }
    }
    return count;
}

void expectLikeReference(const std::vector<std::string> &objects, int dpi) {
    const TestDoc file(objects);
    const Pixels ours = pixelsOf(RenderPage(file.doc, 0, dpi).get());
    const Pixels theirs = reference(PdfText(objects), ours.width, ours.height, dpi / 72.0);
    ASSERT_EQ(ours.rgb.size(), theirs.rgb.size());
    EXPECT_EQ(differing(ours, theirs), 0);
}

std::uint32_t pixelAt(const Pixels &p, int x, int y) {
    return p.rgb[static_cast<std::size_t>(y) * p.width + x];
}

constexpr std::uint32_t white = 0xFFFFFF;
constexpr std::uint32_t red = 0xFF0000;
constexpr const char *redForm = "1 0 0 rg 0 0 10 10 re f";

std::uint32_t colorOf(const TestDoc &file, int x, int y) {
    return pixelAt(pixelsOf(RenderPage(file.doc, 0, 72).get()), x, y);
}

/** The red square over (100, 100) to (120, 120) of a page of 300 by 200. */
bool squareShows(const std::string &annotEntries, const std::string &boxEntries = "/BBox [0 0 10 10]") {
    PageFile page;
    page.add("/Rect [100 100 120 120] " + annotEntries, form(boxEntries, redForm));
    const TestDoc file(page.finished());
    return colorOf(file, 110, 90) == red;
}

KRErrorCode renderCode(DMDoc doc, int page, int dpi) {
    try {
        RenderPage(doc, page, dpi);
    } catch (const HostError &error) {
        return error.code;
    }
    return 0;
}

} // namespace

class DrawLikeLibrary : public testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(DrawLikeLibrary, PageWithAnnotations) {
    const auto [rotate, dpi] = GetParam();
    expectLikeReference(mixedPage("/Rotate " + std::to_string(rotate)).finished(), dpi);
}

TEST_P(DrawLikeLibrary, CroppedPageWhoseCornerIsNotTheOrigin) {
    const auto [rotate, dpi] = GetParam();
    expectLikeReference(
        mixedPage("/MediaBox [-50 -20 300 220] /CropBox [10 15 290 185] /Rotate " + std::to_string(rotate)).finished(),
        dpi);
}

INSTANTIATE_TEST_SUITE_P(Rotations, DrawLikeLibrary,
                         testing::Combine(testing::Values(0, 90, 180, 270), testing::Values(72, 108)));

TEST_P(DrawLikeLibrary, AnnotationsWithoutAppearance) {
    const auto [rotate, dpi] = GetParam();
    PageFile file = mixedPage("/Rotate " + std::to_string(rotate));
    for (const char *entries : {"/Text /Rect [200 20 220 40] /Contents (note) /C [1 1 0]",
                                "/Link /Rect [40 110 110 130] /Border [0 0 2] /C [0 0 1] /A << /S /URI /URI (x) >>",
                                "/Square /Rect [140 20 180 50] /C [1 0 0] /BS << /W 2 >>"}) {
        file.objects.push_back(std::string("<< /Type /Annot /P 3 0 R /Subtype ") + entries + " >>");
        file.annots += std::to_string(file.objects.size()) + " 0 R ";
    }
    file.add("/Subtype /Stamp /Rect [160 30 200 60]", form("/BBox [0 0 100 40]", picture));
    expectLikeReference(file.finished(), dpi);
}

TEST(Draw, FlagsAndKindsThatAreLeftOut) {
    EXPECT_TRUE(squareShows("/Subtype /Stamp"));
    EXPECT_TRUE(squareShows("/Subtype /Stamp /F 4"));
    EXPECT_FALSE(squareShows("/Subtype /Stamp /F 2"));
    EXPECT_FALSE(squareShows("/Subtype /Stamp /F 32"));
    EXPECT_FALSE(squareShows("/Subtype /Popup"));
    EXPECT_TRUE(squareShows("/Subtype /Widget /F 1")) << "invisible speaks of unknown kinds only";
    EXPECT_FALSE(squareShows("/Subtype /Hologram /F 1"));
    EXPECT_TRUE(squareShows("/Subtype /Hologram"));
}

TEST(Draw, DegenerateAndHostileBoxesDrawNothing) {
    for (const char *box : {"", "/BBox [0 0 0 10]", "/BBox [0 0 10]", "/BBox 7", "/BBox [0 0 /A 10]",
                            "/BBox [0 0 1000000000000000000000000 10]", "/BBox [0 0 10 10] /Matrix [0 0 0 0 0 0]",
                            "/BBox [0 0 10 10] /Matrix [1000000000 0 0 1000000000 0 0]"})
        EXPECT_FALSE(squareShows("/Subtype /Stamp", box)) << box;
    EXPECT_TRUE(squareShows("/Subtype /Stamp", "/BBox [0 0 10 10] /Matrix [1 0 0]"));
    EXPECT_TRUE(squareShows("/Subtype /Stamp", "/BBox [0 0 .5 .5]"));
    EXPECT_FALSE(squareShows("/Subtype /Stamp /Rect [100 100 100 120]"));
    EXPECT_FALSE(squareShows("/Subtype /Stamp /Rect /None"));
}

TEST(Draw, StateChoosesTheAppearance) {
    PageFile page;
    page.objects.push_back(form("/BBox [0 0 10 10]", redForm));
    const std::string states = "/AP << /N << /On 7 0 R >> >> /Subtype /Widget /Rect [100 100 120 120]";
    for (const char *as : {" /AS /On", " /AS /Off", "", " /AS 3"}) {
        PageFile copy = page;
        copy.objects.push_back("<< " + states + as + " >>");
        copy.annots = "8 0 R 4 0 R 99 0 R (text)";
        const TestDoc file(copy.finished());
        EXPECT_EQ(colorOf(file, 110, 90) == red, std::string(as) == " /AS /On") << as;
    }
}

TEST(Draw, HiddenLayersOfPageAndAnnotation) {
    PageFile page;
    page.objects[0] = "<< /Type /Catalog /Pages 2 0 R /OCProperties << /OCGs [7 0 R 8 0 R] /D << /OFF [7 0 R] >> >> >>";
    page.objects[3] = stream("", "/OC /A BDC 0 0 1 rg 0 0 50 50 re f EMC /OC /B BDC 0 0 1 rg 50 0 50 50 re f EMC");
    page.objects.push_back("<< /Type /OCG /Name (off) >>");
    page.objects.push_back("<< /Type /OCG /Name (on) >>");
    page.pageEntries = "/Resources << /Properties << /A 7 0 R /B 8 0 R >> >>";
    page.add("/Subtype /Stamp /OC 7 0 R /Rect [100 100 120 120]", form("/BBox [0 0 10 10]", redForm));
    page.add("/Subtype /Stamp /OC 8 0 R /Rect [130 100 150 120]", form("/BBox [0 0 10 10]", redForm));
    const TestDoc file(page.finished());
    EXPECT_EQ(colorOf(file, 20, 190), white);
    EXPECT_EQ(colorOf(file, 70, 190), 0x0000FFu);
    EXPECT_EQ(colorOf(file, 110, 90), white);
    EXPECT_EQ(colorOf(file, 140, 90), red);
}

TEST(Draw, ChangesShowAndUnchangedAppearancesStayOpen) {
    PageFile page;
    page.add("/Subtype /Stamp /Rect [100 100 120 120]", form("/BBox [0 0 10 10]", redForm));
    page.add("/Subtype /Stamp /Rect [10 10 20 20]", form("/BBox [0 0 10 10]", redForm));
    const TestDoc file(page.finished());
    const PageRef shown(AcquirePage(file.doc, 0));
    const LexObj annot = AnnotLex(PageAnnot(shown.get(), 0));
    const LexObj other = NormalAppearance(AnnotLex(PageAnnot(shown.get(), 1)));
    EXPECT_EQ(colorOf(file, 110, 90), red);
    const OnePagePtr before = KeptAppearance(other, lex::NullObj);

    const LexObj dict = lex::NewDict(file.lex, false);
    lex::DictPut(dict, AtomFromText("BBox"), NewRectArray(file.lex, {0, KRFixedFromInt(10), KRFixedFromInt(10), 0}));
    const LexObj blue = lex::NewStream(file.lex, "0 0 1 rg 0 0 10 10 re f", false, dict, lex::NullObj);
    lex::DictPut(lex::DictGet(annot, AtomFromText("AP")), AtomFromText("N"), blue);
    EXPECT_EQ(colorOf(file, 110, 90), 0x0000FFu);
    EXPECT_EQ(KeptAppearance(other, lex::NullObj), before);

    // A change inside what the kept appearance is made of is seen as well.
    lex::DictPut(other, AtomFromText("Matrix"), lex::NewArray(file.lex, false));
    lex::DictPut(other, AtomFromText("BBox"), NewRectArray(file.lex, {0, KRFixedOne, KRFixedOne, 0}));
    EXPECT_NE(KeptAppearance(other, lex::NullObj), before);
}

TEST(Draw, TheLeastRecentlyUsedGoFirst) {
    PageFile page;
    for (int i = 0; i < 4; ++i)
        page.add("/Subtype /Stamp /Rect [0 0 9 9]", form("/BBox [0 0 10 1" + std::to_string(i) + "]", redForm));
    const TestDoc file(page.finished());
    const PageRef shown(AcquirePage(file.doc, 0));
    const auto kept = [&](int i) {
        return KeptAppearance(NormalAppearance(AnnotLex(PageAnnot(shown.get(), i))), lex::NullObj).get();
    };
    DropKept();
    SetLimit("kept-pages", 3);
    const OnePagePtr held = KeptAppearance(NormalAppearance(AnnotLex(PageAnnot(shown.get(), 1))), lex::NullObj);
    const OnePage *first = kept(0);
    kept(2);
    EXPECT_EQ(kept(0), first);
    kept(3);
    EXPECT_EQ(KeptCount(), 3u);
    EXPECT_EQ(kept(0), first);
    EXPECT_NE(kept(1), held.get()) << "the one used least lately was dropped, and what is held stays good";
    EXPECT_EQ(OnePageWidth(*held), 30);
    SetLimit("kept-pages", 512);
}

TEST(Draw, ASnapshotDoesNotBringTheDocumentAlong) {
    PageFile page;
    page.objects.push_back(stream("", std::string(50'000, 'x')));
    page.objects[1].replace(page.objects[1].size() - 2, 2, "/Secret 7 0 R >>");
    page.add("/Subtype /Stamp /Rect [0 0 9 9]",
             form("/BBox [0 0 10 10] /Loop 9 0 R /PieceInfo 7 0 R /Up 3 0 R /Cat 1 0 R", redForm));
    const TestDoc file(page.finished());
    const PageRef shown(AcquirePage(file.doc, 0));
    const std::string bytes = AppearanceSnapshot(NormalAppearance(AnnotLex(PageAnnot(shown.get(), 0))), lex::NullObj);
    EXPECT_FALSE(bytes.empty());
    EXPECT_LT(bytes.size(), 5'000u);
    EXPECT_LT(PageSnapshot(shown.get()).size(), 5'000u);
}

TEST(Draw, HostileStructuresNeitherCrashNorLoop) {
    PageFile page;
    std::string nested;
    for (int i = 0; i < 300; ++i) nested += "<< /A [";
    for (int i = 0; i < 300; ++i) nested += "] >>";
    // A chain of 20,000 references, and resources that contain themselves.
    const std::size_t chain = page.objects.size() + 1;
    for (std::size_t i = 0; i < 20'000; ++i)
        page.objects.push_back("<< /Next " + std::to_string(chain + i + 1) + " 0 R >>");
    page.objects.push_back("<< /Next " + std::to_string(chain) + " 0 R /Deep " + nested + " >>");
    page.pageEntries = "/Resources << /Font << /F " + std::to_string(chain) + " 0 R >> >> /Contents [4 0 R 3 0 R 4]";
    page.add("/Subtype /Stamp /Rect [0 0 9 9] /F (x) /AS [1]", form("/BBox [0 0 10 10] /Filter /Nonsense", "garbage"));
    page.add("/Subtype 12 /Rect [100 100 120 120]", form("/BBox [0 0 10 10]", redForm));
    const TestDoc file(page.finished());
    EXPECT_EQ(colorOf(file, 110, 90), red);
}

TEST(Draw, EntriesOfTheWrongTypeLeaveTheAnnotations) {
    for (const char *entries : {"/Contents 60", "/Contents (x)", "/Resources 7", "/Group [1]", "/MediaBox [1 2 3]",
                                "/CropBox [5 5 5 5]", "/Rotate /Left", "/UserUnit (x)"}) {
        PageFile page;
        page.objects[0] = "<< /Type /Catalog /Pages 2 0 R /OCProperties 12 >>";
        page.add("/Subtype /Stamp /Rect [100 100 120 120]", form("/BBox [0 0 10 10]", redForm));
        std::vector<std::string> objects = page.finished();
        objects[2] = std::string("<< /Type /Page /Parent 2 0 R /Annots [") + page.annots + "] " + entries + " >>";
        const TestDoc file(objects);
        const Pixels pixels = pixelsOf(RenderPage(file.doc, 0, 72).get());
        EXPECT_EQ(pixelAt(pixels, 110, pixels.height - 110), red) << entries;
    }
}

TEST(Draw, LimitsAreErrorsWithASentence) {
    PageFile page;
    const TestDoc file(page.finished());
    EXPECT_EQ(renderCode(file.doc, 0, 0), KRErrBadParam);
    EXPECT_EQ(renderCode(file.doc, 0, -72), KRErrBadParam);
    EXPECT_EQ(renderCode(file.doc, 1, 72), KRErrBadParam);
    EXPECT_EQ(renderCode(file.doc, -1, 72), KRErrBadParam);
    EXPECT_EQ(renderCode(file.doc, 0, 2'000'000'000), KRErrBadParam);
    try {
        RenderPage(file.doc, 0, 5'000);
        FAIL() << "289 megapixels";
    } catch (const HostError &error) {
        EXPECT_NE(error.what.find("20834 by 13889"), std::string::npos) << error.what;
    }
}

TEST(Draw, PngIsWrittenWholeOrNotAtAll) {
    PageFile page;
    const TestDoc file(page.finished());
    const std::string target = TempFile("page.png", "former");
    const KRPathName path = KRPathFromPlatformPath(target.c_str());
    EXPECT_THROW(RenderPageToFile(file.doc, 9, 72, DefaultFileSys(), path), HostError);
    EXPECT_EQ(ReadAll(target), "former");
    RenderPageToFile(file.doc, 0, 72, DefaultFileSys(), path);
    EXPECT_EQ(ReadAll(target).substr(0, 4), "\x89PNG");
    EXPECT_EQ(ReadAll(target), PngOf(RenderPage(file.doc, 0, 72).get()));
    KRFileSysReleasePath(DefaultFileSys(), path);
}
