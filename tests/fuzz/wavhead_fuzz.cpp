// SPDX-License-Identifier: GPL-3.0-or-later
// Reads arbitrary bytes as the header of a WAV file. Also takes the first two bytes as two bases,
// and converts the other bytes, as the digits of a number, from the first base to the second.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "conversion/number_bases.h"
#include "conversion/wav_head.h"
#include "require.h"
#include "support/fake_file_system.h"

namespace {

using namespace sonarith;
using fuzz::require;

constexpr const char* path = "c:\\a.wav";

void convert(std::string_view text, std::uint8_t from, std::uint8_t to) {
    // A conversion of a number above 0 to base 1 never ends, which is deliberate. So base 2
    // replaces base 1 here.
    const auto baseIn = static_cast<std::int16_t>(from % 40);
    const auto baseOut = static_cast<std::int16_t>(to % 40 == 1 ? 2 : to % 40);
    const std::string digits = ConvertBase(text, baseIn, baseOut);
    require(!digits.empty());
    if (baseIn < 2 || baseIn > 36 || baseOut < 2 || baseOut > 36) {
        require(digits == "Error");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    test::FakeFileSystem disk;
    disk.addFile(path, bytes);
    WavHeadReader reader(disk);
    require(reader.wHeadInfo(path) == bytes.starts_with("RIFF"));
    require(reader.head().wavFileLength == std::to_string(size));
    require(reader.head().wavBitRate != 0 || reader.head().wavDuration.empty());
    require(disk.content(path) == bytes);
    if (size >= 2) {
        convert(std::string_view(bytes).substr(2), data[0], data[1]);
    }
    return 0;
}
