// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/alsa_devices.h"

#include <gmock/gmock.h>

namespace sonarith::sound {
namespace {

using testing::ElementsAre;

/// ALSA's list on a Debian machine with a sound card, a webcam that captures sound, sound servers,
/// and a device that the user has defined ("living-room"). The last two entries were added for the
/// test, and choosable() must leave them out. The entry "none" in its result for output is the
/// program's own.
std::vector<DeviceHint> hintsOfAMachine() {
    const std::string card = "HDA Intel PCH, ALC287 Analog";
    return {
        {"null", "Discard all samples (playback) or generate zero samples (capture)", ""},
        {"lavrate", "Rate Converter Plugin Using Libav/FFmpeg Library", ""},
        {"samplerate", "Rate Converter Plugin Using Samplerate Library", ""},
        {"speexrate", "Rate Converter Plugin Using Speex Resampler", ""},
        {"jack", "JACK Audio Connection Kit", ""},
        {"oss", "Open Sound System", ""},
        {"pipewire", "PipeWire Sound Server", ""},
        {"pulse", "PulseAudio Sound Server", ""},
        {"speex", "Plugin using Speex DSP (resample, agc, denoise, echo, dereverb)", ""},
        {"upmix", "Plugin for channel upmix (4,6,8)", ""},
        {"vdownmix", "Plugin for channel downmix (stereo) with a simple spacialization", ""},
        {"default", "Default ALSA Output (currently PipeWire Media Server)", ""},
        {"living-room", "", ""},
        {"hw:CARD=PCH,DEV=0", card + "\nDirect hardware device without any conversions", ""},
        {"plughw:CARD=PCH,DEV=0", card + "\nHardware device with all software conversions", ""},
        {"sysdefault:CARD=PCH", card + "\nDefault Audio Device", ""},
        {"front:CARD=PCH,DEV=0", card + "\nFront output / input", "Output"},
        {"surround51:CARD=PCH,DEV=0", card + "\n5.1 Surround output", "Output"},
        {"iec958:CARD=PCH,DEV=0", card + "\nIEC958 (S/PDIF) Digital Audio Output", "Output"},
        {"hdmi:CARD=PCH,DEV=0", "HDA Intel PCH, HDMI 0\nHDMI Audio Output", "Output"},
        {"dmix:CARD=PCH,DEV=0", card + "\nDirect sample mixing device", "Output"},
        {"dsnoop:CARD=PCH,DEV=0", card + "\nDirect sample snooping device", "Input"},
        {"usbstream:CARD=PCH", "HDA Intel PCH\nUSB Stream Output", "Output"},
        {"hw:CARD=Webcam,DEV=0", "Webcam, USB Audio\nDirect hardware device", "Input"},
        {"none", "A device whose name is reserved for the choice of no device", ""},
        {"", "An entry without a name", ""},
    };
}

std::vector<std::string> namesOf(const std::vector<DeviceEntry>& entries) {
    std::vector<std::string> names;
    for (const DeviceEntry& entry : entries) {
        names.push_back(entry.name);
    }
    return names;
}

TEST(AlsaDevices, OutputsAreSoundServersAndRealDevicesAndTheUsersOwnDevices) {
    EXPECT_THAT(namesOf(choosable(hintsOfAMachine(), SND_PCM_STREAM_PLAYBACK)),
                ElementsAre("default", "jack", "pipewire", "pulse", "living-room",
                            "hw:CARD=PCH,DEV=0", "plughw:CARD=PCH,DEV=0", "sysdefault:CARD=PCH",
                            "front:CARD=PCH,DEV=0", "iec958:CARD=PCH,DEV=0", "hdmi:CARD=PCH,DEV=0",
                            "none"));
}

TEST(AlsaDevices, InputsAreSoundServersAndDevicesThatCanCapture) {
    EXPECT_THAT(namesOf(choosable(hintsOfAMachine(), SND_PCM_STREAM_CAPTURE)),
                ElementsAre("default", "jack", "pipewire", "pulse", "living-room",
                            "hw:CARD=PCH,DEV=0", "plughw:CARD=PCH,DEV=0", "sysdefault:CARD=PCH",
                            "hw:CARD=Webcam,DEV=0"));
}

TEST(AlsaDevices, DescriptionsAreOneLineAndNeverEmpty) {
    for (const DeviceEntry& entry : choosable(hintsOfAMachine(), SND_PCM_STREAM_PLAYBACK)) {
        EXPECT_FALSE(entry.description.empty()) << entry.name;
        EXPECT_EQ(entry.description.find('\n'), std::string::npos) << entry.name;
    }
    const auto entries = choosable(hintsOfAMachine(), SND_PCM_STREAM_CAPTURE);
    EXPECT_EQ(entries[4].description, "living-room");
    EXPECT_EQ(entries[8].description, "Webcam, USB Audio Direct hardware device");
}

TEST(AlsaDevices, AnEmptyListOffersTheDefaultDeviceAndForOutputAlsoTheEntryNone) {
    EXPECT_THAT(namesOf(choosable({}, SND_PCM_STREAM_PLAYBACK)), ElementsAre("default", "none"));
    EXPECT_THAT(namesOf(choosable({}, SND_PCM_STREAM_CAPTURE)), ElementsAre("default"));
}

} // namespace
} // namespace sonarith::sound
