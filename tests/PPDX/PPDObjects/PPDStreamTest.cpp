// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDStream.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "PPDX/PPDObjects/PPDFile.h"
#include "PPDX/PPDObjects/PPDFileStream.h"

namespace {

using Lines = std::vector<std::string>;

Lines LinesOf(PPDStream& stream) {
    Lines lines;
    char line[PPDStream::kLineSize];
    while (stream.GetLine(line)) {
        lines.emplace_back(line);
    }
    return lines;
}

Lines LinesOfFile(std::string const& bytes) {
    TemporaryFile const text(bytes);
    PPDFile file(text.URL());
    PPDFileStream stream(&file, true);
    return LinesOf(stream);
}

// Whole lines of so many bytes.
std::string LinesUpTo(std::size_t size) {
    std::string bytes;
    while (bytes.size() + 101 < size) {
        bytes += std::string(100, '.') + "\n";
    }
    return bytes + std::string(size - bytes.size() - 1, '.') + "\n";
}

}  // namespace

TEST(PPDStreamTest, LineEndsOfEveryKindCountAlike) {
    std::string const bytes = "one\ntwo\rthree\r\n\r\n\n\rlast\n";
    PPDStream stream = StreamOf(bytes);
    EXPECT_EQ(LinesOf(stream), (Lines{"one", "two", "three", "", "", "", "last"}));
    EXPECT_TRUE(stream.EndOfFile());
}

TEST(PPDStreamTest, LineOf255BytesFailsAndItsRestStays) {
    std::string const longest(254, 'a');
    std::string const bytes = longest + "\n" + std::string(255, 'b') + "c\nnext\n";
    PPDStream stream = StreamOf(bytes);
    char line[PPDStream::kLineSize];
    EXPECT_TRUE(stream.GetLine(line));
    EXPECT_EQ(line, longest);
    EXPECT_FALSE(stream.GetLine(line));
    EXPECT_TRUE(stream.Good());
    EXPECT_EQ(LinesOf(stream), (Lines{"c", "next"}));
}

TEST(PPDStreamTest, ByteFFEndsALineAsAFailureInTheMiddleOfTheText) {
    std::string const bytes =
        "ab\xFF"
        "cd\n";
    PPDStream stream = StreamOf(bytes);
    char line[PPDStream::kLineSize];
    EXPECT_FALSE(stream.GetLine(line));
    EXPECT_STREQ(line, "ab");
    EXPECT_TRUE(stream.Good());
    EXPECT_TRUE(stream.GetLine(line));
    EXPECT_STREQ(line, "cd");
}

TEST(PPDStreamTest, NoBytesMakeABadStream) {
    EXPECT_TRUE(PPDStream(nullptr, 5).Bad());
    EXPECT_TRUE(PPDStream("x", 0).Bad());
    EXPECT_TRUE(PPDStream("x", -1).Bad());
    PPDFileStream none(nullptr, true);
    EXPECT_TRUE(none.Bad());
    char line[PPDStream::kLineSize];
    EXPECT_FALSE(none.GetLine(line));
}

TEST(PPDFileStreamTest, LinesStraddleChunksAtEveryOffset) {
    // The border falls on each byte of "xyz\r\nnext" in turn, the line end's two bytes included.
    std::string const tail = "xyz\r\nnext\rlast\n";
    for (std::size_t const border : {PPDFileStream::kChunkSize, PPDFileStream::kReadSize}) {
        for (std::size_t before = 0; before <= tail.size(); ++before) {
            Lines const lines = LinesOfFile(LinesUpTo(border - before) + tail);
            ASSERT_GE(lines.size(), 3U);
            EXPECT_EQ(Lines(lines.end() - 3, lines.end()), (Lines{"xyz", "next", "last"}))
                << border << " " << before;
        }
    }
}

TEST(PPDFileStreamTest, NULInEitherChunkEndsTheTextOfALine) {
    for (std::size_t before = 0; before <= 7; ++before) {
        std::string const tail("ab\0cd\0e\nnext\n", 13);
        Lines const lines = LinesOfFile(LinesUpTo(PPDFileStream::kChunkSize - before) + tail);
        EXPECT_EQ(Lines(lines.end() - 2, lines.end()), (Lines{"ab", "next"})) << before;
    }
}

TEST(PPDFileStreamTest, LineTooLongAcrossAChunkFailsWhereItWouldInsideOne) {
    std::string const filler = std::string(99, '.') + "\n";
    for (std::size_t length : {254U, 255U, 300U}) {
        std::string bytes;
        while (bytes.size() < 9900) {
            bytes += filler;
        }
        bytes += std::string(length, 'x') + "\nnext\n";
        EXPECT_EQ(LinesOfFile(bytes).size(), length == 254U ? 101U : 99U) << length;
    }
}

TEST(PPDFileStreamTest, UnchunkedStreamHoldsTheWholeFileButALastLineWithoutAnEnd) {
    std::string all;
    for (int i = 0; i < 200; ++i) {
        all += std::string(200, 'a') + "\n";
    }
    TemporaryFile const text(all + "last");
    PPDFile file(text.URL());
    PPDFileStream stream(&file, false);
    EXPECT_EQ(LinesOf(stream).size(), 200U);
}

TEST(PPDFileStreamTest, AFileThatCannotBeReadToItsEndIsToldFromAShortOne) {
    class TornFile : public PPDFile {
      public:
        using PPDFile::PPDFile;
        OSErr dataForkRead(char* data, unsigned long* size) override {
            return mReads++ == 0 ? PPDFile::dataForkRead(data, size) : static_cast<OSErr>(ioErr);
        }

      private:
        int mReads = 0;
    };
    TemporaryFile const text("one\ntwo\n");
    for (bool const isTorn : {false, true}) {
        PPDFile whole(text.URL());
        TornFile torn(text.URL());
        PPDFileStream stream(isTorn ? &torn : &whole, true);
        EXPECT_EQ(LinesOf(stream), (Lines{"one", "two"}));
        EXPECT_EQ(isTorn, stream.ReadFailed());
    }
}

TEST(FileMacTest, DataThatIsNotOpenGivesMinus38AndMissingFilesTheirError) {
    TemporaryFile const text("abc");
    PPDFile file(text.URL());
    char buffer[8];
    unsigned long size = sizeof buffer;
    EXPECT_EQ(file.closeDataFork(), fnOpnErr);
    EXPECT_EQ(file.dataForkRead(buffer, &size), fnOpnErr);
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(file.dataForkWrite("x", 1), fnOpnErr);
    EXPECT_EQ(file.openDataFork(fsRdPerm), noErr);
    size = sizeof buffer;
    EXPECT_EQ(file.dataForkRead(buffer, &size), eofErr);
    EXPECT_EQ(std::string(buffer, size), "abc");
    EXPECT_EQ(file.closeDataFork(), noErr);
    EXPECT_TRUE(file.exists());
    unlink(text.Path().c_str());
    EXPECT_FALSE(file.exists());
    EXPECT_EQ(file.openDataFork(fsRdPerm), fnfErr);
    EXPECT_EQ(file.LastError(), fnfErr);
}
