// SPDX-License-Identifier: GPL-3.0-or-later
// Analyses arbitrary bytes as an MP3 file. Before each analysis, the object for its result contains
// header values, as after the analysis of another file. The analysis must either keep all of these
// values or replace all of them.
#include <cstddef>
#include <cstdint>
#include <string>

#include "formats/mp3_analysis.h"
#include "require.h"
#include "support/fake_file_system.h"

namespace {

using namespace sonarith;
using fuzz::require;

constexpr const char* path = "c:\\a.mp3";

/// The values before the analysis. No header yields these values, so that a kept field differs from
/// a replaced one.
Mp3Info fileBefore() {
    Mp3Info info;
    info.Bitrate = -1;
    info.Frequency = -1;
    info.Duration = -1;
    info.MpegVersion = -1;
    info.Mode = "before";
    info.Private = "before";
    return info;
}

void checkHeader(const Mp3Info& info, std::size_t size) {
    if (info.Bitrate == -1) {
        require(info.Frequency == -1 && info.Duration == -1 && info.MpegVersion == -1 &&
                info.Mode == "before" && info.Private == "before");
        return;
    }
    require(size >= 256);
    require(info.MpegVersion == 1 && info.MpegLayer >= 1 && info.MpegLayer <= 3);
    require(info.Frequency == 44100 || info.Frequency == 48000 || info.Frequency == 32000);
    require(info.Bitrate >= 0 && info.Duration >= 0);
    require(info.Mode != "before" && info.Private != "before");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    test::FakeFileSystem disk;
    disk.addFile(path, bytes);
    for (const auto readTag : {TagReading::no, TagReading::yes}) {
        for (const auto readHeader : {HeaderReading::no, HeaderReading::yes}) {
            Mp3Info info = fileBefore();
            const bool ok = GetMp3Info(disk, path, readTag, readHeader, info).ok();
            require(ok || readHeader == HeaderReading::yes || size < 256);
            require(size >= 256 || !ok);
            checkHeader(info, size);
            require(readHeader == HeaderReading::yes || info.Bitrate == -1);
            require(info.Frames >= 0);
        }
    }
    require(disk.content(path) == bytes);
    return 0;
}
