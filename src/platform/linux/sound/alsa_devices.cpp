// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/alsa_devices.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "platform/linux/sound/sample_source.h"

namespace sonarith::sound {

namespace {

/// What the device keeps, in microseconds: 200 ms, twice the time that the card may be late.
constexpr unsigned int bufferMicroseconds = 200'000;

// A variadic function is what ALSA asks for here.
void ignoreMessage(const char*, int, const char*, int, const char*, ...) {}

void silenceMessages() {
    static std::once_flag once;
    std::call_once(once, [] { snd_lib_error_set_handler(ignoreMessage); });
}

/// Takes away ALSA's own start, which would come at the first frame or at a full buffer.
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

/// A field of an ALSA hint; empty if it has none.
std::string hintField(const void* hint, const char* field) {
    const std::unique_ptr<char, decltype(&std::free)> text(snd_device_name_get_hint(hint, field),
                                                           &std::free);
    return text ? text.get() : "";
}

/// ALSA's descriptions have several lines; a list shows one.
std::string onOneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
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

std::vector<DeviceEntry> listDevices(snd_pcm_stream_t direction) {
    silenceMessages();
    std::vector<DeviceEntry> entries{{"default", "Default sound device"}};
    const std::string other = direction == SND_PCM_STREAM_PLAYBACK ? "Input" : "Output";
    constexpr int allCards = -1;
    void** hints = nullptr;
    if (snd_device_name_hint(allCards, "pcm", &hints) >= 0) {
        for (void** hint = hints; *hint != nullptr; ++hint) {
            const std::string name = hintField(*hint, "NAME");
            // "null" is ALSA's own device that swallows everything: the entry "none" is ours.
            if (namesNoDevice(name) || name == "null" || name == "default" ||
                hintField(*hint, "IOID") == other) {
                continue;
            }
            const std::string description = onOneLine(hintField(*hint, "DESC"));
            entries.push_back({name, description.empty() ? name : description});
        }
        snd_device_name_free_hint(hints);
    }
    entries.push_back({noDevice, "None"});
    return entries;
}

} // namespace sonarith::sound
