// Documents written as text.
// SPDX-License-Identifier: MIT
#include "tests/support/PdfText.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

std::filesystem::path TempFolder() {
    static const struct Folder {
        Folder() : path(std::filesystem::temp_directory_path() / ("tessella-test-" + std::to_string(getpid()))) {
            std::filesystem::create_directories(path);
        }
        ~Folder() {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
        std::filesystem::path path;
    } s_folder;
    return s_folder.path;
}

} // namespace

std::string PdfText(const std::vector<std::string> &objects) {
    std::string text = "%PDF-1.4\n";
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        offsets.push_back(text.size());
        text += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::size_t start = text.size();
    text += "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (const std::size_t offset : offsets) {
        char line[32];
        std::snprintf(line, sizeof line, "%010zu 00000 n \n", offset);
        text += line;
    }
    text += "trailer\n<< /Size " + std::to_string(objects.size() + 1) + " /Root 1 0 R >>\nstartxref\n" +
            std::to_string(start) + "\n%%EOF\n";
    return text;
}

std::string StreamObject(const std::string &entries, const std::string &data) {
    return "<< " + entries + " /Length " + std::to_string(data.size()) + " >>\nstream\n" + data + "\nendstream";
}

std::vector<std::string> PageObjects(const std::string &catalogEntries, const std::vector<std::string> &more) {
    std::vector<std::string> objects = {"<< /Type /Catalog /Pages 2 0 R " + catalogEntries + " >>",
                                        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                                        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] >>"};
    objects.insert(objects.end(), more.begin(), more.end());
    return objects;
}

std::vector<std::string> TreeObjects(const std::string &roots, const std::vector<std::string> &more,
                                     const std::string &formExtra) {
    return PageObjects("/AcroForm << /Fields [" + roots + "] " + formExtra + " >>", more);
}

std::string WidgetObject(const std::string &entries) {
    return "<< /Type /Annot /Subtype /Widget /Rect [0 0 10 10] " + entries + " >>";
}

std::vector<std::string> FormObjects(const std::vector<std::string> &fields, const std::string &formExtra) {
    std::string refs;
    std::vector<std::string> widgets;
    for (const std::string &field : fields) {
        refs += std::to_string(4 + widgets.size()) + " 0 R ";
        widgets.push_back("<< /Type /Annot /Subtype /Widget /Rect [100 700 300 720] /P 3 0 R " + field + " >>");
    }
    std::vector<std::string> objects = TreeObjects(refs, widgets, formExtra);
    objects[2] = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Annots [" + refs + "] >>";
    return objects;
}

std::string TempFile(const std::string &name, const std::string &bytes) {
    static int s_number = 0;
    const auto folder = TempFolder() / std::to_string(++s_number);
    std::filesystem::create_directories(folder);
    const auto path = folder / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path.string();
}

std::string FullDevice() {
    if (geteuid() != 0) return std::filesystem::exists("/dev/full") ? "/dev/full" : "";
    const std::string node = TempFile("none", "") + ".full";
    const bool made = mknod(node.c_str(), S_IFCHR | 0600, makedev(1, 7)) == 0;
    return made && std::ofstream(node) ? node : "";
}

std::string ReadAll(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}
