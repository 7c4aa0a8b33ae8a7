// Pictures of the sample form beside those that somebody has looked at (tests/data), drawn by jackdaw and by an
// independent program. They are compared with tolerance: fonts and libraries may move edges a little.
// SPDX-License-Identifier: MIT
#include <cmath>
#include <filesystem>
#include <memory>

#include <cairo.h>
#include <gtest/gtest.h>

#include "tests/cli/Run.h"
#include "tests/support/PdfText.h"

namespace {

constexpr int s_edge = 96;
/** Share of the dark pixels that may be far off: by our renderer, and by another one. */
constexpr double s_share = 0.01;
constexpr double s_shareElsewhere = 0.03;

struct SurfaceDestroy {
    void operator()(cairo_surface_t *surface) const {
        cairo_surface_destroy(surface);
    }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDestroy>;

// On white, as a viewer shows it.
Surface Load(const std::string &path) {
    const Surface png(cairo_image_surface_create_from_png(path.c_str()));
    EXPECT_EQ(cairo_surface_status(png.get()), CAIRO_STATUS_SUCCESS) << path;
    const int width = cairo_image_surface_get_width(png.get());
    const int height = cairo_image_surface_get_height(png.get());
    Surface page(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    cairo_t *context = cairo_create(page.get());
    cairo_set_source_rgb(context, 1, 1, 1);
    cairo_paint(context);
    cairo_set_source_surface(context, png.get(), 0, 0);
    cairo_paint(context);
    cairo_destroy(context);
    return page;
}

int Luminance(const Surface &surface, int x, int y) {
    const unsigned char *row = cairo_image_surface_get_data(surface.get()) +
                               static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(surface.get());
    return (row[4 * x] + row[4 * x + 1] + row[4 * x + 2]) / 3;
}

// Darkest of a pixel and its neighbours in one picture against the pixel in the other: an edge may lie one pixel off.
bool IsFar(const Surface &a, const Surface &b, int x, int y, int width, int height) {
    const int wanted = Luminance(a, x, y);
    int nearest = 255;
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
            if (x + dx < 0 || y + dy < 0 || x + dx >= width || y + dy >= height) continue;
            nearest = std::min(nearest, std::abs(Luminance(b, x + dx, y + dy) - wanted));
        }
    }
    return nearest > s_edge;
}

void ExpectAlike(const std::string &drawn, const std::string &expected, double share) {
    const Surface a = Load(drawn);
    const Surface b = Load(expected);
    const int width = cairo_image_surface_get_width(b.get());
    const int height = cairo_image_surface_get_height(b.get());
    ASSERT_EQ(cairo_image_surface_get_width(a.get()), width);
    ASSERT_EQ(cairo_image_surface_get_height(a.get()), height);
    int far = 0, ink = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            ink += Luminance(b, x, y) < 255 - s_edge ? 1 : 0;
            far += IsFar(a, b, x, y, width, height) || IsFar(b, a, x, y, width, height) ? 1 : 0;
        }
    }
    EXPECT_GT(ink, 1000) << "an empty picture proves nothing";
    EXPECT_LT(far, ink * share) << drawn << " beside " << expected;
}

void ExpectPicture(const std::string &pdf, const std::string &name) {
    const std::string expected = std::string(TESSELLA_TEST_DATA_DIR) + "/" + name + ".png";
    const std::string png = TempFile(name + ".png", "");
    const Ran ran = Jackdaw({"render", pdf, "--dpi", "72", "-o", png});
    ASSERT_EQ(ran.exit, 0) << ran;
    ExpectAlike(png, expected, s_share);
    if (!HasProgram("pdftoppm")) return;
    const std::string stem = std::filesystem::path(png).replace_extension("").string() + "-library";
    ASSERT_EQ(RunProgram({"pdftoppm", "-r", "72", "-png", "-singlefile", pdf, stem}).exit, 0);
    ExpectAlike(stem + ".png", expected, s_shareElsewhere);
}

std::string Sample(const char *name) {
    return std::string(TESSELLA_SAMPLES_DIR) + "/" + name;
}

TEST(Pictures, SampleFormFilledIn) {
    const std::string out = TempFile("filled.pdf", "");
    const Ran ran = Jackdaw({"fill", Sample("form.pdf"), "--json", Sample("data.json"), "-o", out});
    ASSERT_EQ(ran.exit, 0) << ran;
    ExpectPicture(out, "form-filled");
}

TEST(Pictures, SampleFormReset) {
    const std::string out = TempFile("reset.pdf", "");
    ASSERT_EQ(Jackdaw({"reset", Sample("form.pdf"), "-o", out}).exit, 0);
    ExpectPicture(out, "form-reset");
}

} // namespace
