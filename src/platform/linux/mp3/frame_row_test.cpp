// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/frame_row.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::operator+;

/// A row of frames of 417 bytes that contain only zeros after the header.
Data row(int frames) {
    Data data;
    for (int i = 0; i < frames; ++i) {
        data = data + Data{0xFF, 0xFB, 0x90, 0x64} + Data(413, 0);
    }
    return data;
}

TEST(FrameRowTest, ARowNeedsThreeFramesOfOneFormatUnlessTheSourceEndsOrATagBeginsEarlier) {
    const Data other{0xFF, 0xFB, 0x94, 0x64}; // 48000 Hz
    const FrameHeader header = *parseHeader(row(1));
    EXPECT_TRUE(beginsRow(header, row(3), 0));
    EXPECT_TRUE(beginsRow(header, Data(7, 1) + row(3), 7));
    EXPECT_FALSE(beginsRow(header, row(2) + other + Data(500, 0), 0));
    EXPECT_FALSE(beginsRow(header, row(1) + Data(500, 0), 0));
    EXPECT_TRUE(beginsRow(header, row(1), 0))
        << "a single frame at the end of the source must begin a row";
    EXPECT_TRUE(beginsRow(header, row(1) + fixture::text("TAG") + Data(125, 0), 0))
        << "a single frame before a tag must begin a row";
    EXPECT_TRUE(beginsRow(header, fixture::part(row(2), 0, 600), 0))
        << "a frame must begin a row if the source ends within the second frame";
    EXPECT_FALSE(beginsRow(header, fixture::part(row(1), 0, 300), 0))
        << "a truncated frame must not begin a row";
}

TEST(RowsAheadTest, FindsRowsOfTheRequestedFormatThatBeginInTheRequestedRange) {
    const Data data = Data(100, 0) + row(3) + Data(40, 0);
    const StreamFormat format = parseHeader(row(1))->format;
    StreamFormat mono = format;
    mono.channels = 1;
    RowsAhead rows;
    EXPECT_FALSE(rows.anyWithin(format, 4, 100, data, 0));
    EXPECT_FALSE(rows.anyWithin(mono, 4, 101, data, 0));
    EXPECT_TRUE(rows.anyWithin(format, 4, 101, data, 0));
    EXPECT_TRUE(rows.anyWithin(format, 100, 101, data, 0));
    EXPECT_FALSE(rows.anyWithin(format, 101, 300, data, 0))
        << "a row that begins before the range must not be found";
}

TEST(RowsAheadTest, FindsTheSameRowWhereverTheGivenBytesBeginInTheSource) {
    const Data data = Data(100, 0) + row(3);
    const StreamFormat format = parseHeader(row(1))->format;
    RowsAhead rows;
    const Bytes bytes(data);
    EXPECT_TRUE(rows.anyWithin(format, 5004, 5200, bytes, 5000));
    EXPECT_TRUE(rows.anyWithin(format, 5054, 5200, bytes.subspan(50), 5050));
    EXPECT_FALSE(rows.anyWithin(format, 5101, 5200, bytes.subspan(50), 5050));
}

TEST(RowsAheadTest, TriesEachOffsetOnce) {
    Data data;
    while (data.size() < 8000) {
        data = data + Data{0xFF, 0xFB, 0x90, 0x64};
    }
    RowsAhead rows;
    for (std::int64_t position = 0; position < 4000; position += 4) {
        const Bytes bytes = Bytes(data).subspan(static_cast<std::size_t>(position));
        static_cast<void>(rows.anyWithin({}, position + 4, position + 2000, bytes, position));
    }
    EXPECT_LE(rows.placesTried(), 6000 / 4);
    EXPECT_GT(rows.placesTried(), 5000 / 4);
}

} // namespace
} // namespace sonarith::mp3
