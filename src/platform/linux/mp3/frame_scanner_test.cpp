// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/frame_scanner.h"

#include <gmock/gmock.h>

#include "platform/linux/mp3/mp3_fixture.h"

namespace sonarith::mp3 {
namespace {

using fixture::Data;
using fixture::junk;
using fixture::operator+;
using fixture::ordinary;
using fixture::part;
using testing::ElementsAre;

struct Scan {
    std::vector<Frame> frames;
    ScanLoss loss;
    bool freeFormat = false;

    std::int64_t placesTried = 0;

    /// Searches for frames of the format in which the stream is decoded (StreamSurvey), or of every
    /// format if the survey determines none.
    explicit Scan(const Data& data) : Scan(data, surveyStream(MemorySource(data)).format) {}
    Scan(const Data& data, const std::optional<StreamFormat>& format) {
        const MemorySource source(data);
        FrameScanner scanner = format ? FrameScanner(source, *format, 0) : FrameScanner(source);
        while (const auto frame = scanner.next()) {
            frames.push_back(*frame);
            const Bytes bytes = scanner.bytesOf(*frame);
            EXPECT_EQ(bytes.size(), static_cast<std::size_t>(frame->header.bytes));
            EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), data.begin() + frame->offset));
        }
        loss = scanner.loss();
        freeFormat = scanner.freeFormatOffset().has_value();
        placesTried = scanner.placesTried();
    }
    [[nodiscard]] int gaps() const {
        return static_cast<int>(std::count_if(frames.begin(), frames.end(),
                                              [](const Frame& frame) { return frame.afterGap; }));
    }
};

/// Where the frame in the middle of the ordinary stream begins.
std::size_t middle() {
    const Scan scan(ordinary());
    return static_cast<std::size_t>(scan.frames[scan.frames.size() / 2].offset);
}

TEST(FrameScannerTest, FindsEveryFrameOfACleanStream) {
    const Scan scan(ordinary());
    ASSERT_EQ(scan.frames.size(), 156U); // with the information frame
    std::int64_t end = 0;
    for (const Frame& frame : scan.frames) {
        EXPECT_EQ(frame.offset, end);
        end += frame.header.bytes;
    }
    EXPECT_EQ(end, static_cast<std::int64_t>(ordinary().size()));
    EXPECT_EQ(scan.gaps(), 1); // before the first frame
    EXPECT_EQ(scan.loss, ScanLoss{});
}

TEST(FrameScannerTest, LosesNoFrameToJunkBeforeBetweenOrAfterFrames) {
    const std::size_t place = middle();
    for (const std::size_t bytes : {1U, 3U, 500U, 1500U, 4096U, 70'000U}) {
        const Scan front(junk(bytes) + ordinary());
        EXPECT_EQ(front.frames.size(), 156U) << bytes;
        EXPECT_EQ(front.loss.bytesSkipped, static_cast<std::int64_t>(bytes));
        const Scan inside(part(ordinary(), 0, place) + junk(bytes) +
                          part(ordinary(), place, SIZE_MAX));
        EXPECT_EQ(inside.frames.size(), 156U) << bytes;
        EXPECT_EQ(inside.loss.bytesSkipped, static_cast<std::int64_t>(bytes));
        EXPECT_EQ(inside.gaps(), 2);
        const Scan behind(ordinary() + junk(bytes));
        EXPECT_EQ(behind.frames.size(), 156U) << bytes;
        EXPECT_EQ(behind.loss.bytesSkipped, static_cast<std::int64_t>(bytes));
    }
}

TEST(FrameScannerTest, LosesOnlyTheTruncatedFrame) {
    const std::size_t place = middle();
    for (const std::size_t missing : {1U, 100U, 414U}) { // the header is complete
        const Scan scan(part(ordinary(), 0, place + 418 - missing) +
                        part(ordinary(), place + 418, SIZE_MAX));
        const auto isAt = [&](std::size_t offset) {
            return std::any_of(scan.frames.begin(), scan.frames.end(), [&](const Frame& frame) {
                return frame.offset == static_cast<std::int64_t>(offset);
            });
        };
        EXPECT_FALSE(isAt(place)) << missing;
        EXPECT_TRUE(isAt(place + 418 - missing)) << missing;
        EXPECT_EQ(scan.frames.size(), 155U) << missing;
        EXPECT_EQ(scan.gaps(), 2);
    }
}

TEST(FrameScannerTest, LosesOnlyTheTruncatedLastFrameOfAFile) {
    const Scan whole(ordinary());
    for (std::size_t frame = 0; frame < 5; ++frame) {
        const auto begin = static_cast<std::size_t>(whole.frames[frame].offset);
        for (const std::size_t bytes : {0U, 1U, 3U, 4U, 200U, 416U}) {
            EXPECT_EQ(Scan(part(ordinary(), 0, begin + bytes)).frames.size(), frame);
        }
    }
}

TEST(FrameScannerTest, SkipsTagsWithoutCountingThemAsLost) {
    Data id3v2 = fixture::text("ID3") + Data{4, 0, 0, 0, 0, 0x20, 0} + Data(4096, 0xFF);
    const Data id3v1 = fixture::text("TAG") + Data(125, ' ');
    const Data ape =
        fixture::text("APETAGEX") + Data{0xD0, 7, 0, 0, 100, 0, 0, 0} + Data(116, 0xFF);
    const Scan scan(id3v2 + id3v2 + ordinary() + id3v1 + ordinary() + ape + id3v1);
    EXPECT_EQ(scan.frames.size(), 312U);
    EXPECT_EQ(scan.loss, ScanLoss{});
    EXPECT_EQ(scan.gaps(), 2);
}

TEST(FrameScannerTest, DoesNotTrustTagsWithAFalseLength) {
    for (const Data& size : {Data{0x7F, 0x7F, 0x7F, 0x7F}, Data{0, 1, 0, 3}, Data{0, 0, 0, 1},
                             Data{0xFF, 0xFF, 0xFF, 0xFF}}) {
        const Scan scan(fixture::text("ID3") + Data{4, 0, 0} + size + ordinary());
        EXPECT_EQ(scan.frames.size(), 156U);
        EXPECT_EQ(scan.loss.bytesSkipped, 10);
    }
}

TEST(FrameScannerTest, DropsFramesOfAnotherFormat) {
    const Data& other = fixture::encoded(48000, 2, "-b 128");
    const Data& mono = fixture::encoded(44100, 1, "-b 64");
    const std::size_t place = middle();
    for (const Data& foreign : {other, mono, fixture::layer2(9), fixture::layer1(9)}) {
        const Scan scan(part(ordinary(), 0, place) + foreign + part(ordinary(), place, SIZE_MAX),
                        StreamFormat{});
        EXPECT_EQ(scan.frames.size(), 156U);
        EXPECT_EQ(scan.loss.bytesSkipped, 0);
        EXPECT_EQ(scan.loss.framesDropped, static_cast<std::int64_t>(Scan(foreign).frames.size()));
        EXPECT_EQ(scan.gaps(), 2);
    }
}

TEST(FrameScannerTest, FindsNoFrameInDataWithoutFrames) {
    for (const Data& data : {Data{}, Data(1, 0xFF), Data(100'000, 0), Data(100'000, 0xFF),
                             junk(200'000), Data{0xFF, 0xFB, 0x90, 0x64}}) {
        const Scan scan(data);
        EXPECT_TRUE(scan.frames.empty());
        EXPECT_EQ(scan.loss.bytesSkipped, static_cast<std::int64_t>(data.size()));
    }
}

TEST(FrameScannerTest, AcceptsAFileOfOneFrame) {
    EXPECT_EQ(Scan(fixture::layer2(1)).frames.size(), 1U);
}

TEST(FrameScannerTest, DetectsFreeFormatWithAndWithoutInformationFrameAndAfterJunk) {
    const Data& tagged = fixture::encoded(44100, 2, "--freeformat -b 400");
    const Data& plain = fixture::encoded(44100, 2, "-t --freeformat -b 400");
    for (const Data& data : {tagged, plain, junk(4096) + plain}) {
        const Scan scan(data);
        EXPECT_TRUE(scan.freeFormat);
        EXPECT_TRUE(scan.frames.empty());
    }
    EXPECT_FALSE(Scan(ordinary()).freeFormat);
}

TEST(FrameScannerTest, AScanFromAnyFrameFindsTheSameFurtherFramesAsAScanFromTheBeginning) {
    const std::size_t place = middle();
    const Data data = junk(700) + part(ordinary(), 0, place + 200) + junk(3000, 2) +
                      part(ordinary(), place + 300, SIZE_MAX) +
                      fixture::encoded(48000, 2, "-b 128") + ordinary();
    const Scan whole(data);
    const MemorySource source(data);
    for (std::size_t first = 0; first < whole.frames.size(); ++first) {
        FrameScanner scanner(source, whole.frames[first].header.format, whole.frames[first].offset);
        for (std::size_t i = first; i < whole.frames.size(); ++i) {
            const auto frame = scanner.next();
            ASSERT_TRUE(frame);
            ASSERT_EQ(frame->offset, whole.frames[i].offset);
            ASSERT_TRUE(i == first || frame->afterGap == whole.frames[i].afterGap);
        }
        ASSERT_FALSE(scanner.next());
    }
}

TEST(FrameScannerTest, FindsFramesOfEveryFormatIfNoFormatIsGiven) {
    const Data data = fixture::layer2(9) + fixture::layer1(9);
    const MemorySource source(data);
    FrameScanner scanner(source);
    int layer1 = 0;
    int layer2 = 0;
    int gaps = 0;
    while (const auto frame = scanner.next()) {
        (frame->header.format.layer == 1 ? layer1 : layer2)++;
        gaps += frame->afterGap ? 1 : 0;
    }
    EXPECT_EQ(layer1, 9);
    EXPECT_EQ(layer2, 9);
    EXPECT_EQ(gaps, 2);
    EXPECT_EQ(scanner.loss(), ScanLoss{});
}

TEST(FrameScannerTest, CountsTheDamagedPlacesBetweenFrames) {
    const std::size_t place = middle();
    const Data head = part(ordinary(), 0, place);
    const Data tail = part(ordinary(), place, SIZE_MAX);
    const Data id3v1 = fixture::text("TAG") + Data(125, ' ');
    EXPECT_EQ(Scan(junk(700) + ordinary() + junk(700)).loss.damagedPlaces, 0);
    EXPECT_EQ(Scan(head + id3v1 + tail).loss.damagedPlaces, 0);
    EXPECT_EQ(Scan(head + junk(700) + tail).loss.damagedPlaces, 1);
    EXPECT_EQ(Scan(head + junk(700) + tail + junk(9) + tail).loss.damagedPlaces, 2);
    EXPECT_EQ(Scan(part(head, 0, place - 50) + tail).loss.damagedPlaces, 1)
        << "a truncated frame must count as one damaged place";
}

TEST(FrameScannerTest, ReturnsAllFramesBeforeAnUnreadableOffset) {
    const Scan whole(ordinary());
    for (const std::size_t number : {0U, 1U, 80U, 155U}) {
        const auto bad = static_cast<std::size_t>(whole.frames[number].offset);
        for (const std::size_t within : {0U, 1U, 400U}) {
            const fixture::BadPlaceSource source(ordinary(), bad + within, SIZE_MAX);
            FrameScanner scanner(source, StreamFormat{}, 0);
            std::size_t frames = 0;
            while (const auto frame = scanner.next()) {
                EXPECT_EQ(scanner.bytesOf(*frame).size(),
                          static_cast<std::size_t>(frame->header.bytes));
                ++frames;
            }
            EXPECT_EQ(frames, number);
            EXPECT_TRUE(scanner.failure());
            EXPECT_LE(source.failures, 2);
        }
    }
}

TEST(FrameScannerTest, SkipsATagWhoseContentsCannotBeRead) {
    const Data tagged =
        fixture::text("ID3") + Data{4, 0, 0, 0, 4, 0, 0} + Data(65'536, 0) + ordinary();
    const fixture::BadPlaceSource source(tagged, 1000, 2000);
    FrameScanner scanner(source, StreamFormat{}, 0);
    int frames = 0;
    while (scanner.next()) {
        ++frames;
    }
    EXPECT_EQ(frames, 156);
    EXPECT_FALSE(scanner.failure());
}

TEST(FrameScannerTest, TriesEachOffsetOfHostileDataABoundedNumberOfTimes) {
    // Layer II at 8000 Hz: a frame at 160 kbit/s is the largest one, 2881 bytes; a frame at 8
    // kbit/s has 144 bytes.
    const Data large{0xFF, 0xE5, 0xEA, 0x00};
    const Data small = Data{0xFF, 0xE5, 0x18, 0x00} + Data(140, 0);
    // A frame of another format (24000 Hz, 8 kbit/s, 24 bytes). After its own header, it consists
    // of headers of large frames.
    const Data other = Data{0xFF, 0xF3, 0x14, 0xC4} + large + large + large + large + large;
    Data data;
    while (data.size() < 100'000) {
        // Each large frame seems truncated, since the row of small frames begins inside it. A
        // scanner that searched each large frame anew for this row would exceed the limit below.
        for (int i = 0; i < 37; ++i) {
            data = data + large + other + other + other;
        }
        data = data + small + small + small;
    }
    const Scan scan(data, parseHeader(large)->format);
    EXPECT_GT(scan.loss.framesDropped, 3000);
    EXPECT_LE(scan.placesTried, 2 * static_cast<std::int64_t>(data.size()) / 4);
}

TEST(FrameScannerTest, TerminatesOnHostileData) {
    Data headers; // only beginnings of frames in free format
    while (headers.size() < 400'000) {
        headers = headers.size() < 4096 ? headers + Data{0xFF, 0xFB, 0, 0, 0xFF, 0xF3, 4, 0}
                                        : headers + headers;
    }
    Data tags; // tags with a false length, each followed by zeros
    while (tags.size() < 400'000) {
        tags = tags.size() < 40 ? fixture::text("ID3") + Data{4, 0, 0, 0, 0x7F, 0, 0} + Data(30, 0)
                                : tags + tags;
    }
    static_cast<void>(Scan(headers)); // the result does not matter
    EXPECT_TRUE(Scan(tags).frames.empty());
}

} // namespace
} // namespace sonarith::mp3
