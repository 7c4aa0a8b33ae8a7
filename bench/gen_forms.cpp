// gen_forms: writes a form of any number of fields as a plain text PDF, fifty fields a page.
// SPDX-License-Identifier: MIT
#include <cstdio>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tests/support/PdfText.h"

namespace {

struct Request {
    int count = 1000;
    bool mixed = false;
    bool faces = false;
    std::string output;
};

constexpr int s_rows = 25;
constexpr int s_fieldsPerPage = 2 * s_rows;
constexpr int s_width = 250;
constexpr int s_height = 20;

// Objects that every form has, by number.
enum : std::size_t { Catalog = 1, Pages, Helvetica, Dingbats, OnFace, OffFace, SharedObjects = OffFace };

std::string Reference(std::size_t object) {
    return std::to_string(object) + " 0 R";
}

std::string Face(const std::string &content, int width) {
    return "<< /Type /XObject /Subtype /Form /BBox [0 0 " + std::to_string(width) + " " + std::to_string(s_height) +
           "] /Resources << /Font << /Helv " + Reference(Helvetica) + " /ZaDb " + Reference(Dingbats) +
           " >> >> /Length " + std::to_string(content.size()) + " >> stream\n" + content + "\nendstream";
}

std::string Rect(int index) {
    const int place = index % s_fieldsPerPage;
    const int left = 40 + place / s_rows * 280, bottom = 740 - place % s_rows * 29;
    const auto corner = [](int x, int y) { return std::to_string(x) + " " + std::to_string(y); };
    return "[" + corner(left, bottom) + " " + corner(left + s_width, bottom + s_height) + "]";
}

std::string ButtonFace(const char *state) {
    return std::string(" /AS /") + state + " /AP << /N << /Yes " + Reference(OnFace) + " /Off " + Reference(OffFace) +
           " >> >>";
}

// What makes a field's kind; `face` is the object of its appearance, or 0.
std::string Kind(int index, bool mixed, std::size_t face) {
    const std::string text = " /DA (/Helv 10 Tf 0 g)";
    switch (mixed ? index % 5 : 0) {
    case 1:
        return " /FT /Btn /V /Off /DA (/ZaDb 0 Tf 0 g)" + ButtonFace("Off");
    case 2:
        return " /FT /Ch /Ff 131072 /Opt [(red) (green) (blue)] /V (green)" + text;
    case 3:
        return " /FT /Ch /Opt [[(1) (one)] [(2) (two)]] /V (1)" + text;
    case 4:
        return " /FT /Btn /Ff 49152 /V /Yes /DA (/ZaDb 0 Tf 0 g)" + ButtonFace("Yes");
    default:
        return " /FT /Tx /V (value " + std::to_string(index) + ")" + text +
               (face ? " /AP << /N " + Reference(face) + " >>" : "");
    }
}

std::string Field(int index, std::size_t page, const std::string &kind) {
    char name[32];
    std::snprintf(name, sizeof name, "field%06d", index + 1);
    return "<< /Type /Annot /Subtype /Widget /F 4 /T (" + std::string(name) + ") /Rect " + Rect(index) + " /P " +
           Reference(page) + " /MK << /BC [0.4 0.4 0.6] >>" + kind + " >>";
}

/** Objects under way. Each page comes first, then its fields, each behind its face. */
struct Form {
    std::vector<std::string> objects = std::vector<std::string>(SharedObjects);
    std::string pages, fields;

    std::size_t Add(const std::string &body) {
        objects.push_back(body);
        return objects.size();
    }
};

void AddPage(Form &form, const Request &request, int first, int end) {
    const std::size_t page = form.Add("");
    std::string annots;
    for (int i = first; i < end; ++i) {
        const std::string content = "/Tx BMC BT /Helv 10 Tf 0 g 2 6 Td (value " + std::to_string(i) + ") Tj ET EMC";
        const std::size_t face = request.faces ? form.Add(Face(content, s_width)) : 0;
        annots += Reference(form.Add(Field(i, page, Kind(i, request.mixed, face)))) + "\n";
    }
    form.objects[page - 1] = "<< /Type /Page /Parent " + Reference(Pages) + " /Annots [\n" + annots + "] >>";
    form.pages += Reference(page) + "\n";
    form.fields += annots;
}

std::vector<std::string> MakeForm(const Request &request) {
    Form form;
    int pages = 0;
    for (int first = 0; first < request.count; first += s_fieldsPerPage, ++pages)
        AddPage(form, request, first, std::min(first + s_fieldsPerPage, request.count));
    form.objects[Catalog - 1] = "<< /Type /Catalog /Pages " + Reference(Pages) +
                                " /AcroForm << /DA (/Helv 10 Tf 0 g) " + "/DR << /Font << /Helv " +
                                Reference(Helvetica) + " /ZaDb " + Reference(Dingbats) + " >> >> /Fields [\n" +
                                form.fields + "] >> >>";
    form.objects[Pages - 1] =
        "<< /Type /Pages /MediaBox [0 0 612 792] /Count " + std::to_string(pages) + " /Kids [\n" + form.pages + "] >>";
    form.objects[Helvetica - 1] = "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>";
    form.objects[Dingbats - 1] = "<< /Type /Font /Subtype /Type1 /BaseFont /ZapfDingbats >>";
    form.objects[OnFace - 1] = Face("q BT /ZaDb 12 Tf 4 5 Td (4) Tj ET Q", s_height);
    form.objects[OffFace - 1] = Face("q Q", s_height);
    return form.objects;
}

bool Write(const std::string &path, const std::string &bytes) {
    std::FILE *out = path == "-" ? stdout : std::fopen(path.c_str(), "wb");
    if (!out) return false;
    const bool whole = std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
    return (out == stdout ? std::fflush(out) : std::fclose(out)) == 0 && whole;
}

} // namespace

int main(int argc, char **argv) {
    Request request;
    CLI::App app("Write a form of N fields", "gen_forms");
    app.add_option("N", request.count, "Number of fields")->required()->check(CLI::Range(1, 1000000));
    app.add_flag("--mixed", request.mixed,
                 "Text fields, check boxes, combo boxes, list boxes and radio buttons in turn");
    app.add_flag("--faces", request.faces, "Text fields come with appearance streams");
    app.add_option("-o,--output", request.output, "The PDF; - is standard output")->required();
    CLI11_PARSE(app, argc, argv);
    if (Write(request.output, PdfText(MakeForm(request)))) return 0;
    std::perror(request.output.c_str());
    return 1;
}
