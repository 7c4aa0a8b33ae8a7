// The file under a document, read by blocks. The PDF library moves through a file in small jumps, and its own source
// asks the system at every one: a tenth of the time that a large form takes.
//
// A failure is thrown as the library's own exception, and the library makes what it did not get into nulls. So the
// source remembers that there was one: what was read before it and after it is no document to be kept.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include <qpdf/InputSource.hh>
#include <sys/stat.h>

namespace jackdaw::lex {

class FileSource : public InputSource {
public:
    /** Takes `fd` over, a descriptor that can be read at any place. `name` stands for the file in messages. Throws
     *  HostError when the file cannot be examined. */
    FileSource(std::string name, int fd);
    ~FileSource() override;

    qpdf_offset_t findAndSkipNextEOL() override;
    const std::string &getName() const override;
    qpdf_offset_t tell() override;
    void seek(qpdf_offset_t offset, int whence) override;
    void rewind() override;
    std::size_t read(char *buffer, std::size_t length) override;
    void unreadCh(char ch) override;

    /** Throws KRErrFileIO when a read failed or found less than the file held when it was opened, and when the file is
     *  another one by now: larger, smaller or written to. */
    void requireWhole() const;

    /** Called after every 65,536 reads, of which most are of one byte. */
    std::function<void()> onProgress;

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
    void readBlock(Block &block, qpdf_offset_t start);
    [[noreturn]] void fail(const std::string &why, qpdf_offset_t place);

    std::string name_;
    int fd_;
    /** As it was when it was opened. */
    struct stat facts_;
    /** The first failure; empty for none. */
    std::string failure_;
    qpdf_offset_t position_ = 0;
    std::uint16_t reads_ = 0;
    /** A block's place is its number modulo the count. */
    std::array<Block, s_blockCount> blocks_;
};

} // namespace jackdaw::lex
