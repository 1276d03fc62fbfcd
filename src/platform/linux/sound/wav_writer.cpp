// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/wav_writer.h"

#include <cerrno>

#include <fcntl.h>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

std::unique_ptr<WavWriter> WavWriter::open(const files::FileDescriptor& file, Channels channels,
                                           WavForm form) {
    const int duplicate = ::fcntl(file.get(), F_DUPFD_CLOEXEC, 0);
    if (duplicate < 0) {
        return nullptr;
    }
    SF_INFO info{};
    info.samplerate = frameRate;
    info.channels = static_cast<int>(channels);
    info.format = (form == WavForm::plain ? SF_FORMAT_WAV : SF_FORMAT_RF64) | SF_FORMAT_PCM_16;
    // The duplicate is closed by libsndfile, also if this fails.
    SNDFILE* sound = sf_open_fd(duplicate, SFM_WRITE, &info, SF_TRUE);
    return sound != nullptr ? std::unique_ptr<WavWriter>(new WavWriter(sound)) : nullptr;
}

std::size_t WavWriter::write(std::span<const std::int16_t> samples) {
    errno = 0;
    const sf_count_t written =
        sf_write_short(sound_.get(), samples.data(), static_cast<sf_count_t>(samples.size()));
    const auto count = written < 0 ? std::size_t{0} : static_cast<std::size_t>(written);
    if (count < samples.size()) {
        keepErrorNumber();
    }
    return count;
}

bool WavWriter::finish() {
    errno = 0;
    sf_command(sound_.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
    if (sf_error(sound_.get()) != SF_ERR_NO_ERROR) {
        keepErrorNumber();
        return false;
    }
    return true;
}

/// libsndfile passes the system's number on in `errno` alone, and may have none.
void WavWriter::keepErrorNumber() {
    errorNumber_ = errno != 0 ? errno : EIO;
}

} // namespace sonarith::sound
