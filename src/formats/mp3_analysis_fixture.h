// SPDX-License-Identifier: GPL-3.0-or-later
// The fixture of the tests of mp3_analysis.h.
#pragma once

#include <string>

#include <gmock/gmock.h>

#include "formats/mp3_analysis.h"
#include "support/fake_file_system.h"
#include "support/mp3_bytes.h"

namespace sonarith {

class Mp3AnalysisTest : public testing::Test {
  protected:
    const std::string path = "c:\\a.mp3";
    test::FakeFileSystem disk;
    Mp3Info info;

    Status analyse(const std::string& content, TagReading readTag = TagReading::yes,
                   HeaderReading readHeader = HeaderReading::yes) {
        disk.addFile(path, content);
        disk.log.clear();
        const auto result = GetMp3Info(disk, path, readTag, readHeader, info);
        return result.ok() ? Status() : Status(result.error());
    }
    Status analyse(const test::Mp3Bytes& bytes) { return analyse(bytes.content); }
    std::string digitsOf(const std::string& content) {
        disk.addFile(path, content);
        return ReadMp3Bits(disk, path, TagReading::yes, HeaderReading::yes, info).valueOr("failed");
    }
    /// Fills `info` with the values of a previous file.
    void fillRecord() {
        ASSERT_TRUE(analyse(test::Mp3Bytes(4'000'000)
                                .header(1, 0xFFFAB3C9)
                                .variableRate(1, 6000)
                                .end(test::tagOf("T", "A", "B", "1999", "C", 17)))
                        .ok());
        ASSERT_EQ(info.Bitrate, 204);
        ASSERT_EQ(info.Genre, 17);
    }
};

} // namespace sonarith
