// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/alsa_devices.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <mutex>
#include <string_view>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

namespace {

/// The length of the device's buffer: 200 ms, twice the sound that is written before playback
/// starts (PlaybackSession).
constexpr unsigned int bufferMicroseconds = 200'000;

// ALSA requires a variadic function here.
void ignoreMessage(const char*, int, const char*, int, const char*, ...) {}

void silenceMessages() {
    static std::once_flag once;
    std::call_once(once, [] { snd_lib_error_set_handler(ignoreMessage); });
}

/// Disables ALSA's automatic start, which would occur when the buffer is full or nearly full.
int startOnDemand(snd_pcm_t* pcm) {
    snd_pcm_sw_params_t* params = nullptr;
    snd_pcm_sw_params_alloca(&params);
    snd_pcm_uframes_t boundary = 0;
    int error = snd_pcm_sw_params_current(pcm, params);
    if (error >= 0) {
        error = snd_pcm_sw_params_get_boundary(params, &boundary);
    }
    if (error >= 0) {
        error = snd_pcm_sw_params_set_start_threshold(pcm, params, boundary);
    }
    return error < 0 ? error : snd_pcm_sw_params(pcm, params);
}

/// A field of an ALSA hint; empty if the hint does not have this field.
std::string hintField(const void* hint, const char* field) {
    const std::unique_ptr<char, decltype(&std::free)> text(snd_device_name_get_hint(hint, field),
                                                           &std::free);
    return text ? text.get() : "";
}

/// Joins the lines of a description, because an entry of a list shows only one line.
std::string onOneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

/// Whether the part before ":CARD=..." names a device that can be chosen: one that plays or
/// captures in stereo. Other names are for other purposes, such as mixing in ALSA itself (dmix,
/// dsnoop) or more than two channels (surround51).
bool namesCardDevice(std::string_view name) {
    constexpr std::string_view kinds[] = {"sysdefault", "front", "hw", "plughw", "hdmi", "iec958"};
    const std::string_view kind = name.substr(0, name.find(':'));
    return std::find(std::begin(kinds), std::end(kinds), kind) != std::end(kinds);
}

/// Whether `hint` is a device that ALSA itself implements, not a real device or a sound server.
/// Plug-ins are recognised by their description ("Rate Converter Plugin Using ..."), because a
/// user's own device may have any name. "null" and "oss" are recognised by their names, because
/// their descriptions do not contain "plugin".
bool isPlugIn(const DeviceHint& hint) {
    std::string words = hint.description;
    std::transform(words.begin(), words.end(), words.begin(),
                   [](unsigned char letter) { return std::tolower(letter); });
    // "null" discards all sound; choosable() adds the entry "None" to the outputs instead. "oss"
    // uses an old kernel interface that most systems no longer offer.
    return words.find("plugin") != std::string::npos ||
           words.find("plug-in") != std::string::npos || hint.name == "null" || hint.name == "oss";
}

bool isChoosable(const DeviceHint& hint) {
    if (namesNoDevice(hint.name) || hint.name == "default") {
        return false; // choosable() itself adds "default" and, for playback, the entry "None"
    }
    return hint.name.find(':') == std::string::npos ? !isPlugIn(hint) : namesCardDevice(hint.name);
}

} // namespace

bool namesNoDevice(const std::string& name) {
    return name.empty() || name == noDevice;
}

PcmHandle openPcm(const std::string& name, snd_pcm_stream_t direction) {
    silenceMessages();
    snd_pcm_t* opened = nullptr;
    if (snd_pcm_open(&opened, name.c_str(), direction, SND_PCM_NONBLOCK) < 0) {
        return nullptr;
    }
    PcmHandle pcm(opened);
    constexpr int channels = 2;
    constexpr int allowResampling = 1;
    if (snd_pcm_set_params(pcm.get(), SND_PCM_FORMAT_S16, SND_PCM_ACCESS_RW_INTERLEAVED, channels,
                           frameRate, allowResampling, bufferMicroseconds) < 0 ||
        startOnDemand(pcm.get()) < 0) {
        return nullptr;
    }
    return pcm;
}

std::vector<DeviceEntry> choosable(const std::vector<DeviceHint>& hints,
                                   snd_pcm_stream_t direction) {
    const bool playing = direction == SND_PCM_STREAM_PLAYBACK;
    const std::string other = playing ? "Input" : "Output";
    std::vector<DeviceEntry> entries{
        {"default", playing ? "Default sound device" : "Default sound input"}};
    for (const DeviceHint& hint : hints) {
        if (hint.direction != other && isChoosable(hint)) {
            const std::string description = onOneLine(hint.description);
            entries.push_back({hint.name, description.empty() ? hint.name : description});
        }
    }
    if (playing) {
        entries.push_back({noDevice, "None"});
    }
    return entries;
}

std::vector<DeviceEntry> listDevices(snd_pcm_stream_t direction) {
    silenceMessages();
    std::vector<DeviceHint> found;
    constexpr int allCards = -1;
    void** hints = nullptr;
    if (snd_device_name_hint(allCards, "pcm", &hints) >= 0) {
        for (void** hint = hints; *hint != nullptr; ++hint) {
            found.push_back(
                {hintField(*hint, "NAME"), hintField(*hint, "DESC"), hintField(*hint, "IOID")});
        }
        snd_device_name_free_hint(hints);
    }
    return choosable(found, direction);
}

} // namespace sonarith::sound
