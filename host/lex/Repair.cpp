// Repairs by text search: a trailer or a startxref is put behind what the file still shows of its objects.
// SPDX-License-Identifier: MIT
#include "lex/Repair.h"

#include <cctype>
#include <string_view>

namespace jackdaw::lex {

namespace {

/** An object's head "n g obj" in the file. */
struct ObjectHead {
    std::size_t offset = std::string::npos;
    std::string number, generation;
};

bool isSpace(char c) {
    return std::isspace(static_cast<unsigned char>(c)) || c == '\0';
}

/** The digits that end in front of `end`, behind at least one blank when `needBlank`; moves `end` to their start. */
std::string digitsBefore(std::string_view bytes, std::size_t *end, bool needBlank) {
    std::size_t last = *end;
    while (last > 0 && isSpace(bytes[last - 1])) --last;
    if (needBlank && last == *end) return {};
    std::size_t first = last;
    while (first > 0 && std::isdigit(static_cast<unsigned char>(bytes[first - 1]))) --first;
    *end = first;
    return std::string(bytes.substr(first, last - first));
}

/** The last object head in front of `position`. */
ObjectHead objectBefore(const std::string &bytes, std::size_t position) {
    constexpr std::size_t longest = 10;
    for (std::size_t at = bytes.rfind("obj", position); at != std::string::npos && at > 0;
         at = bytes.rfind("obj", at - 1)) {
        ObjectHead head;
        head.offset = at;
        head.generation = digitsBefore(bytes, &head.offset, /*needBlank*/ false);
        if (head.generation.empty()) continue;
        head.number = digitsBefore(bytes, &head.offset, /*needBlank*/ true);
        if (head.number.empty() || head.number.size() > longest || head.generation.size() > longest) continue;
        return head;
    }
    return {};
}

/** Place of the last "/Type" with the value `name`; npos when there is none. */
std::size_t lastOfType(const std::string &bytes, std::string_view name) {
    constexpr std::string_view typeKey = "/Type";
    for (std::size_t at = bytes.rfind(name); at != std::string::npos && at > 0; at = bytes.rfind(name, at - 1)) {
        const std::size_t after = at + name.size();
        if (after < bytes.size() && std::isalnum(static_cast<unsigned char>(bytes[after]))) continue;
        std::size_t end = at;
        while (end > 0 && isSpace(bytes[end - 1])) --end;
        if (end >= typeKey.size() && bytes.compare(end - typeKey.size(), typeKey.size(), typeKey) == 0) return at;
    }
    return std::string::npos;
}

bool showsEncryption(const std::string &bytes) {
    for (std::size_t at = bytes.find("/Filter"); at != std::string::npos; at = bytes.find("/Filter", at + 1)) {
        std::size_t value = at + 7;
        while (value < bytes.size() && isSpace(bytes[value])) ++value;
        if (bytes.compare(value, 9, "/Standard") == 0) return true;
    }
    return false;
}

/** Names the object in front of `position` as the root. The recovery finds objects and trailers at the start of a line.
 */
std::string withTrailerFor(const std::string &bytes, std::size_t position) {
    if (position == std::string::npos) return {};
    const ObjectHead head = objectBefore(bytes, position);
    if (head.offset == std::string::npos) return {};
    std::string patched = bytes.substr(0, head.offset);
    patched += '\n';
    patched.append(bytes, head.offset);
    return patched + "\nendobj\ntrailer\n<< /Root " + head.number + " " + head.generation + " R >>\n";
}

} // namespace

std::string WithStartOfXRefStream(const std::string &bytes) {
    const std::size_t position = lastOfType(bytes, "/XRef");
    if (position == std::string::npos) return {};
    const ObjectHead head = objectBefore(bytes, position);
    if (head.offset == std::string::npos) return {};
    return bytes + "\nstartxref\n" + std::to_string(head.offset) + "\n%%EOF\n";
}

std::string WithTrailerForCatalog(const std::string &bytes) {
    if (showsEncryption(bytes)) return {};
    return withTrailerFor(bytes, lastOfType(bytes, "/Catalog"));
}

std::string WithTrailerForFdf(const std::string &bytes) {
    return withTrailerFor(bytes, bytes.find("/FDF"));
}

} // namespace jackdaw::lex
