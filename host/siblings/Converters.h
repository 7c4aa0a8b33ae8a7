// Converters between an encoding and big-endian UCS-2: the strict ones of the table "BaseTool".
// SPDX-License-Identifier: MIT
#pragma once

#include <iconv.h>
#include <string>

#include "SiblingHFTs.h"

namespace jackdaw {

/** An iconv descriptor that is closed with the object; not open when the system does not know the pair. */
class Coder {
public:
    Coder() = default;
    Coder(const std::string &to, const std::string &from);
    ~Coder();
    Coder(Coder &&other) noexcept;
    Coder &operator=(Coder &&other) noexcept;

    bool isOpen() const;
    /** Back to the initial shift state. */
    void reset();
    /** As iconv(): moves both ends of both buffers along; 0, or the errno it stopped with. */
    int run(const char *&source, std::size_t &sourceLeft, char *&target, std::size_t &targetLeft);
    /** Writes what returns a stateful encoding to its initial state; 0 or E2BIG. */
    int finish(char *&target, std::size_t &targetLeft);

private:
    iconv_t descriptor_ = reinterpret_cast<iconv_t>(-1);
};

/** By a name of the table's ("Host", "PDFDocEncoding", "Shift-JIS", "UTF-8"); null for another. */
BaseToolConverter ConverterNamed(const char *name);

/** The table's two conversions: bytes written; `error` gets a BaseToolError and may be null. */
std::int32_t ConvertToUCS(BaseToolConverter converter, const char *source, std::int32_t sourceLength, char *target,
                          std::int32_t targetSize, std::int32_t *error);
std::int32_t ConvertFromUCS(BaseToolConverter converter, const char *source, std::int32_t sourceLength, char *target,
                            std::int32_t targetSize, std::int32_t *error);

} // namespace jackdaw
