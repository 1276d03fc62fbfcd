// SPDX-License-Identifier: GPL-3.0-or-later
// Devices that this machine does not offer: each operation answers that there is none.
#pragma once

#include "platform/mixer.h"
#include "platform/system_information.h"
#include "platform/tray.h"
#include "platform/wave_input.h"

namespace sonarith {

class AbsentMixer final : public Mixer {
  public:
    MixerResult open(MixerHandle&) override { return MixerResult::badDevice; }
    MixerResult getLineInfo(MixerHandle, MixerLine&) override { return MixerResult::badDevice; }
    MixerResult getLineControls(MixerHandle, MixerLineControls&) override {
        return MixerResult::badDevice;
    }
    MixerResult getControlDetails(MixerHandle, MixerControlDetails&) override {
        return MixerResult::badDevice;
    }
    MixerResult setControlDetails(MixerHandle, const MixerControlDetails&) override {
        return MixerResult::badDevice;
    }
};

class AbsentWaveInput final : public WaveInput {
  public:
    WaveResult open(WaveInHandle&, std::uint32_t, const WaveFormat&) override {
        return WaveResult::badDevice;
    }
    WaveResult prepareHeader(WaveInHandle, WaveHeader&) override { return WaveResult::badDevice; }
    WaveResult unprepareHeader(WaveInHandle, WaveHeader&) override { return WaveResult::badDevice; }
    WaveResult addBuffer(WaveInHandle, WaveHeader&) override { return WaveResult::badDevice; }
    WaveResult start(WaveInHandle) override { return WaveResult::badDevice; }
    WaveResult stop(WaveInHandle) override { return WaveResult::badDevice; }
    WaveResult reset(WaveInHandle) override { return WaveResult::badDevice; }
    WaveResult close(WaveInHandle) override { return WaveResult::badDevice; }
    [[nodiscard]] std::string errorText(WaveResult) const override {
        return "There is no sound input.";
    }
};

class AbsentTray final : public Tray {
  public:
    bool add(const TrayIcon&) override { return false; }
    bool modify(const TrayIcon&) override { return false; }
    bool remove(std::uint32_t) override { return false; }
    void setMenu(MenuItem&) override {}
    [[nodiscard]] bool hostPresent() const override { return false; }
};

class AbsentSystemInformation final : public SystemInformation {
  public:
    [[nodiscard]] std::size_t logicalDriveStrings(std::string&, std::size_t) const override {
        return 0;
    }
    [[nodiscard]] std::optional<DiskSpace> diskSpace(const std::string&) const override {
        return std::nullopt;
    }
    [[nodiscard]] DriveKind driveKind(const std::string&) const override {
        return DriveKind::noRoot;
    }
    [[nodiscard]] std::optional<VolumeInformation>
    volumeInformation(const std::string&) const override {
        return std::nullopt;
    }
    [[nodiscard]] MemoryStatus memoryStatus() const override { return {}; }
    [[nodiscard]] ProcessorInformation processor() const override { return {}; }
    [[nodiscard]] std::optional<SystemVersion> version() const override { return std::nullopt; }
    [[nodiscard]] int keyboardType() const override { return 0; }
    [[nodiscard]] int functionKeys() const override { return 0; }
    [[nodiscard]] std::optional<std::string> tempFolder() const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::string> systemFolder() const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::string> windowsFolder() const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::string> computerName() const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::string> userName() const override { return std::nullopt; }
};

} // namespace sonarith
