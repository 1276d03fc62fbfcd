// SPDX-License-Identifier: GPL-3.0-or-later
#include "player/meter_capture.h"

namespace sonarith {

namespace {

/// A format with few bytes a second, since the samples are not used.
constexpr WaveFormat MeterFormat = {.wFormatTag = 1,
                                    .nChannels = 1,
                                    .nSamplesPerSec = 8000,
                                    .nAvgBytesPerSec = 8000,
                                    .nBlockAlign = 1,
                                    .wBitsPerSample = 8,
                                    .cbSize = 0};

} // namespace

MeterCapture::MeterCapture(const Platform& platform, Form4& form)
    : platform_(platform), form_(form) {
    form_.Check3.onClick = [this] {
        if (form_.Check3.value() == 1) {
            StartMeter();
        } else {
            StopMeter();
        }
    };
}

MeterCapture::~MeterCapture() {
    if (MeterRunning) {
        StopMeter();
    }
}

bool MeterCapture::StartMeter() {
    if (MeterRunning) {
        return true;
    }
    for (MeterBuffer& buffer : MeterBuffers) {
        buffer.data.fill(std::byte{0});
        buffer.header.lpData = buffer.data.data();
        buffer.header.dwBufferLength = static_cast<std::uint32_t>(buffer.data.size());
        buffer.header.dwBytesRecorded = 0;
        buffer.header.dwFlags = 0;
        buffer.header.dwLoops = 0;
    }
    WaveInput& input = platform_.waveInput;
    if (const WaveResult result = input.open(hWaveIn, 0, MeterFormat);
        result != WaveResult::noError) {
        report(result);
        return false;
    }
    // If StopMeter() was called while report() showed a message, the device is closed and must not
    // be used.
    const int stopsBefore = stops_;
    for (MeterBuffer& buffer : MeterBuffers) {
        report(input.prepareHeader(hWaveIn, buffer.header));
        if (stops_ != stopsBefore) {
            return true;
        }
    }
    for (MeterBuffer& buffer : MeterBuffers) {
        report(input.addBuffer(hWaveIn, buffer.header));
        if (stops_ != stopsBefore) {
            return true;
        }
    }
    MeterRunning = true;
    input.start(hWaveIn);
    return true;
}

void MeterCapture::StopMeter() {
    MeterRunning = false;
    ++stops_;
    WaveInput& input = platform_.waveInput;
    input.reset(hWaveIn);
    input.stop(hWaveIn);
    for (MeterBuffer& buffer : MeterBuffers) {
        input.unprepareHeader(hWaveIn, buffer.header);
    }
    input.close(hWaveIn);
}

void MeterCapture::requeueDoneBuffers() {
    for (MeterBuffer& buffer : MeterBuffers) {
        if ((buffer.header.dwFlags & wave_header::done) != 0) {
            platform_.waveInput.addBuffer(hWaveIn, buffer.header);
        }
    }
}

void MeterCapture::report(WaveResult result) {
    if (result != WaveResult::noError) {
        platform_.boxes.show(platform_.waveInput.errorText(result));
    }
}

} // namespace sonarith
