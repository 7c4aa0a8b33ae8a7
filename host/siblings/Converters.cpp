// Converters between an encoding and big-endian UCS-2.
//
// "UCS-2BE" of iconv refuses what lies beyond the basic plane, on either road, which is just what the table promises.
// SPDX-License-Identifier: MIT
#include "siblings/Converters.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <langinfo.h>
#include <map>

#include "kernel/HostError.h"
#include "siblings/TextConvert.h"

struct BaseToolConverterRec {
    /** Not open for PDFDocEncoding, which goes by the table. */
    jackdaw::Coder toUCS, fromUCS;
};

namespace jackdaw {

namespace {

struct PDFDocPair {
    std::uint16_t unicode;
    std::uint8_t code;
};
#include "PDFDocCodes.inc"

constexpr std::uint16_t s_noUnicode = 0xFFFF;

/** Converters by iconv's name; "" is PDFDocEncoding. They are never destroyed. */
std::map<std::string, BaseToolConverterRec> &converters() {
    static auto &s_converters = *new std::map<std::string, BaseToolConverterRec>;
    return s_converters;
}

BaseToolConverter pdfDocConverter() {
    return &converters()[""];
}

BaseToolConverter iconvConverter(const std::string &name) {
    const auto known = converters().find(name);
    if (known != converters().end()) return &known->second;
    BaseToolConverterRec fresh{Coder("UCS-2BE", name), Coder(name, "UCS-2BE")};
    if (!fresh.toUCS.isOpen() || !fresh.fromUCS.isOpen()) return nullptr;
    return &converters().emplace(name, std::move(fresh)).first->second;
}

struct Conversion {
    const char *source;
    std::size_t sourceLeft;
    char *target;
    std::size_t targetLeft;
};

std::int32_t runCoder(Coder &coder, Conversion &work) {
    coder.reset();
    int reason = coder.run(work.source, work.sourceLeft, work.target, work.targetLeft);
    if (reason == 0) reason = coder.finish(work.target, work.targetLeft);
    return reason == 0 ? BaseToolOK : reason == E2BIG ? BaseToolTargetTooSmall : BaseToolNotConvertible;
}

std::int32_t runPDFDocToUCS(Conversion &work) {
    for (; work.sourceLeft > 0; ++work.source, --work.sourceLeft) {
        const int unicode = PDFDocCodeToUnicode(static_cast<unsigned char>(*work.source));
        if (unicode < 0) return BaseToolNotConvertible;
        if (work.targetLeft < 2) return BaseToolTargetTooSmall;
        *work.target++ = static_cast<char>(unicode >> 8);
        *work.target++ = static_cast<char>(unicode & 0xFF);
        work.targetLeft -= 2;
    }
    return BaseToolOK;
}

std::int32_t runUCSToPDFDoc(Conversion &work) {
    for (; work.sourceLeft > 1; work.source += 2, work.sourceLeft -= 2) {
        const auto high = static_cast<unsigned char>(work.source[0]), low = static_cast<unsigned char>(work.source[1]);
        const int code = UnicodeToPDFDocCode(static_cast<char32_t>(high << 8 | low));
        if (code < 0) return BaseToolNotConvertible;
        if (work.targetLeft < 1) return BaseToolTargetTooSmall;
        *work.target++ = static_cast<char>(code);
        --work.targetLeft;
    }
    return work.sourceLeft == 0 ? BaseToolOK : BaseToolNotConvertible;
}

template <class Run>
std::int32_t convert(Run run, const char *source, std::int32_t sourceLength, char *target, std::int32_t targetSize,
                     std::int32_t *error) {
    Conversion work{source, static_cast<std::size_t>(std::max(sourceLength, 0)), target,
                    static_cast<std::size_t>(std::max(targetSize, 0))};
    const std::int32_t result = run(work);
    if (error) *error = result;
    return static_cast<std::int32_t>(work.target - target);
}

void needConverter(BaseToolConverter converter) {
    if (!converter) throw HostError{KRErrBadParam, "A text converter is missing."};
}

} // namespace

Coder::Coder(const std::string &to, const std::string &from) : descriptor_(iconv_open(to.c_str(), from.c_str())) {}

Coder::~Coder() {
    if (isOpen()) iconv_close(descriptor_);
}

Coder::Coder(Coder &&other) noexcept : descriptor_(other.descriptor_) {
    other.descriptor_ = reinterpret_cast<iconv_t>(-1);
}

Coder &Coder::operator=(Coder &&other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

bool Coder::isOpen() const {
    return descriptor_ != reinterpret_cast<iconv_t>(-1);
}

void Coder::reset() {
    iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
}

int Coder::run(const char *&source, std::size_t &sourceLeft, char *&target, std::size_t &targetLeft) {
    // iconv() does not write to its source, whatever its type says.
    const std::size_t result = iconv(descriptor_, const_cast<char **>(&source), &sourceLeft, &target, &targetLeft);
    return result == static_cast<std::size_t>(-1) ? errno : 0;
}

int Coder::finish(char *&target, std::size_t &targetLeft) {
    return iconv(descriptor_, nullptr, nullptr, &target, &targetLeft) == static_cast<std::size_t>(-1) ? errno : 0;
}

int PDFDocCodeToUnicode(unsigned char code) {
    const std::uint16_t unicode = s_pdfDocToUnicode[code];
    return unicode == s_noUnicode ? -1 : unicode;
}

int UnicodeToPDFDocCode(char32_t unicode) {
    const auto *const found =
        std::lower_bound(std::begin(s_unicodeToPDFDoc), std::end(s_unicodeToPDFDoc), unicode,
                         [](const PDFDocPair &pair, char32_t wanted) { return pair.unicode < wanted; });
    return found != std::end(s_unicodeToPDFDoc) && found->unicode == unicode ? found->code : -1;
}

const char *HostEncodingName() {
    const char *const name = nl_langinfo(CODESET);
    return name && *name ? name : "ASCII";
}

BaseToolConverter ConverterOfEncoding(const char *localeName) {
    const std::string name = localeName ? localeName : HostEncodingName();
    if (name == "PDFDocEncoding") return pdfDocConverter();
    if (name == "Shift-JIS") return ConverterNamed("Shift-JIS");
    // iconv takes suffixes such as //IGNORE, and an empty name for the locale's own encoding.
    return name.empty() || name.find('/') != std::string::npos ? nullptr : iconvConverter(name);
}

BaseToolConverter ConverterNamed(const char *name) {
    if (!name) return nullptr;
    if (std::strcmp(name, "Host") == 0) return ConverterOfEncoding(nullptr);
    if (std::strcmp(name, "PDFDocEncoding") == 0) return pdfDocConverter();
    if (std::strcmp(name, "UTF-8") == 0) return iconvConverter("UTF-8");
    if (std::strcmp(name, "Shift-JIS") != 0) return nullptr;
    // The strict set has a yen sign for the backslash and an overline for the tilde, which spoils paths and scripts.
    const BaseToolConverter usual = iconvConverter("CP932");
    return usual ? usual : iconvConverter("SHIFT-JIS");
}

std::int32_t ConvertToUCS(BaseToolConverter converter, const char *source, std::int32_t sourceLength, char *target,
                          std::int32_t targetSize, std::int32_t *error) {
    needConverter(converter);
    const auto run = [&](Conversion &work) {
        return converter == pdfDocConverter() ? runPDFDocToUCS(work) : runCoder(converter->toUCS, work);
    };
    return convert(run, source, sourceLength, target, targetSize, error);
}

std::int32_t ConvertFromUCS(BaseToolConverter converter, const char *source, std::int32_t sourceLength, char *target,
                            std::int32_t targetSize, std::int32_t *error) {
    needConverter(converter);
    const auto run = [&](Conversion &work) {
        return converter == pdfDocConverter() ? runUCSToPDFDoc(work) : runCoder(converter->fromUCS, work);
    };
    return convert(run, source, sourceLength, target, targetSize, error);
}

} // namespace jackdaw
