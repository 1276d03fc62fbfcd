// SPDX-License-Identifier: GPL-3.0-or-later
// The device type "waveaudio": runs the commands that set the format of a new sound, record it and
// save it. It plays nothing, opens no existing file, and leaves writing to Recorder.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/linux/mci/device.h"
#include "platform/linux/mci/devices.h"

namespace sonarith::mci {

/// Commands and keywords: set (samplespersec, channels, bitspersample, alignment, bytespersec, time
/// format); record (overwrite, insert); stop; save; status (length, position, mode, ready, media
/// present, time format, and the five values of the format that "set" also accepts).
///
/// A new device contains no sound. Its format is 44100 Hz, 16 bit, stereo; its time format is
/// milliseconds. Its position is always the end of the recorded sound, so "record overwrite" and
/// "record insert" both append to that sound.
class WaveRecorder : public Device {
  public:
    explicit WaveRecorder(const Devices& devices);

    [[nodiscard]] Reply run(const Command& command) override;

  private:
    enum class LengthUnit { milliseconds, bytes, samples };

    [[nodiscard]] Reply set(const Command& command);
    [[nodiscard]] MciError setFormat(const Arguments& arguments);
    [[nodiscard]] Reply record(const Command& command);
    [[nodiscard]] Reply stop(const Command& command);
    [[nodiscard]] Reply status(const Command& command);
    [[nodiscard]] Reply save(const Command& command);
    [[nodiscard]] std::string lengthText() const;
    [[nodiscard]] bool recording() const { return recorder_ && recorder_->recording(); }

    std::function<std::unique_ptr<Recorder>()> makeRecorder_;
    std::function<std::filesystem::path(const std::string&)> machinePath_;
    std::unique_ptr<Recorder> recorder_; ///< null until a "record" has succeeded
    int channels_ = 2;
    LengthUnit unit_ = LengthUnit::milliseconds;
};

} // namespace sonarith::mci
