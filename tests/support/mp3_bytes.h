// SPDX-License-Identifier: GPL-3.0-or-later
// Builds the bytes of MP3 files for tests: headers, frame counts and tags at chosen positions of a
// file that otherwise contains zeros. The files contain no audio.
//
//     disk.addFile("c:\\a.mp3", Mp3Bytes(4'000'000).header(1, commonHeader).content);
//     disk.addFile("c:\\b.mp3", Mp3Bytes(1000).end(tagOf("Title")).content);
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace sonarith::test {

/// MPEG 1 Layer III, no CRC, 128 kbit/s, 44100 Hz, stereo; all further bits 0.
inline constexpr std::uint32_t commonHeader = 0xFFFB9000;

struct Mp3Bytes {
    std::string content;

    explicit Mp3Bytes(std::size_t length) : content(length, '\0') {}

    /// Overwrites the bytes from `position` on; the first byte of the file has position 1.
    Mp3Bytes& at(std::size_t position, std::string_view bytes) {
        content.replace(position - 1, bytes.size(), bytes);
        return *this;
    }
    Mp3Bytes& header(std::size_t position, std::uint32_t value) {
        return at(position, bigEndian(value));
    }
    /// Writes the marker "Xing" (variable bit rate) and the number of frames into the MPEG 1 stereo
    /// frame that starts at `position`.
    Mp3Bytes& variableRate(std::size_t position, std::uint32_t frames) {
        return at(position + 36, "Xing").at(position + 44, bigEndian(frames));
    }
    /// Overwrites the last bytes.
    Mp3Bytes& end(std::string_view bytes) { return at(content.size() - bytes.size() + 1, bytes); }

    static std::string bigEndian(std::uint32_t value) {
        std::string bytes;
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes += static_cast<char>(value >> shift & 0xFF);
        }
        return bytes;
    }
};

/// A field of a tag, padded with `filler` or cut to `length` bytes.
inline std::string padded(std::string text, std::size_t length, char filler = ' ') {
    text.resize(length, filler);
    return text;
}

/// The 128 bytes of an ID3v1 tag. The parameters have the order of the tag's fields.
inline std::string tagOf(const std::string& title, const std::string& artist = "",
                         const std::string& album = "", const std::string& year = "",
                         const std::string& comment = "", unsigned char genre = 0) {
    return "TAG" + padded(title, 30) + padded(artist, 30) + padded(album, 30) + padded(year, 4) +
           padded(comment, 30) + static_cast<char>(genre);
}

} // namespace sonarith::test
