// The file under a document, read by blocks. The PDF library moves through a file in small jumps, and its own source
// asks the system at every one: a tenth of the time that a large form takes. Failures are the library's own exceptions,
// which its recovery knows how to meet.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <string>

#include <qpdf/InputSource.hh>

namespace jackdaw::lex {

class FileSource : public InputSource {
public:
    /** Takes `fd` over, a descriptor that can be read at any place. `name` stands for the file in messages. */
    FileSource(std::string name, int fd);
    ~FileSource() override;

    qpdf_offset_t findAndSkipNextEOL() override;
    const std::string &getName() const override;
    qpdf_offset_t tell() override;
    void seek(qpdf_offset_t offset, int whence) override;
    void rewind() override;
    std::size_t read(char *buffer, std::size_t length) override;
    void unreadCh(char ch) override;

private:
    static constexpr std::size_t s_blockSize = 16384;
    static constexpr std::size_t s_blockCount = 16;
    struct Block {
        qpdf_offset_t start = -1;
        std::size_t length = 0;
        std::unique_ptr<char[]> bytes;
    };

    /** The block that holds `offset`, read if need be. */
    const Block &blockAt(qpdf_offset_t offset);

    std::string name_;
    int fd_;
    qpdf_offset_t position_ = 0;
    /** A block's place is its number modulo the count. */
    std::array<Block, s_blockCount> blocks_;
};

} // namespace jackdaw::lex
