// SPDX-License-Identifier: GPL-3.0-or-later
// Writes 16-bit samples at the card's rate as a WAV into an open file, through libsndfile. It
// neither opens nor names files.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/late/sndfile.h"

namespace sonarith::sound {

enum class Channels { mono = 1, stereo = 2 };

/// Plain WAV holds up to 4 GiB and is read by everything; RF64 (EBU Tech 3306) is for more.
enum class WavForm { plain, rf64 };

/// The plain form's header: RIFF, "fmt " of 16 bytes, "data".
inline constexpr std::int64_t wavHeaderBytes = 44;
/// The most sample bytes of the plain form: its sizes are 32-bit, and the outer one counts the
/// header but for its first 8 bytes.
inline constexpr std::int64_t maxWavSampleBytes = 0xFFFFFFFF - (wavHeaderBytes - 8);

class WavWriter {
  public:
    /// Writes to a duplicate of `file`, from its beginning; empty if libsndfile refuses.
    [[nodiscard]] static std::unique_ptr<WavWriter> open(const files::FileDescriptor& file,
                                                         Channels channels, WavForm form);

    /// Appends interleaved samples. Answers how many were written: fewer than asked for is a
    /// failure, whose cause `errorNumber` then has.
    [[nodiscard]] std::size_t write(std::span<const std::int16_t> samples);
    /// Brings the header up to date. False: it could not be written.
    [[nodiscard]] bool finish();
    /// The errno value of the last failure.
    [[nodiscard]] int errorNumber() const { return errorNumber_; }

  private:
    struct CloseSound {
        void operator()(SNDFILE* sound) const { sf_close(sound); }
    };
    explicit WavWriter(SNDFILE* sound) : sound_(sound) {}
    void keepErrorNumber();

    std::unique_ptr<SNDFILE, CloseSound> sound_;
    int errorNumber_ = 0;
};

} // namespace sonarith::sound
