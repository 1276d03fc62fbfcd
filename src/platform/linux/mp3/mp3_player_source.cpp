// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/mp3/mp3_player_source.h"

#include <system_error>
#include <utility>

#include "platform/linux/mp3/card_rate.h"
#include "platform/linux/mp3/pcm_reader.h"

namespace sonarith::mp3 {

Result<std::shared_ptr<Mp3PlayerSource>> Mp3PlayerSource::open(const std::filesystem::path& path) {
    const std::shared_ptr<Mp3PlayerSource> player(new Mp3PlayerSource);
    Result<std::unique_ptr<FileSource>> file = FileSource::open(path, player->stop_);
    if (!file.ok()) {
        return file.error();
    }
    player->file_ = std::move(file.value());
    try {
        player->thread_ = std::thread([self = player.get()] { self->decodeAll(); });
    } catch (const std::system_error& error) {
        return {ErrorNumber::deviceUnavailable, error.what()};
    }
    return player;
}

Mp3PlayerSource::~Mp3PlayerSource() {
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    room_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

sound::Pulled Mp3PlayerSource::pull(std::span<sound::StereoFrame> block) {
    const std::lock_guard lock(mutex_);
    const std::size_t frames = queue_.pop(block);
    room_.notify_one();
    if (frames == block.size()) {
        return {frames, sound::Supply::flowing};
    }
    return {frames, ended_ ? sound::Supply::ended : sound::Supply::starving};
}

void Mp3PlayerSource::decodeAll() {
    const Result<std::unique_ptr<PcmReader>> reader = openPcmReader(*file_);
    if (reader.ok() && reader.value()) {
        Result<CardRate> rate = CardRate::create(reader.value()->format());
        for (bool more = rate.ok(); more;) {
            const std::span<const std::int16_t> samples = reader.value()->next();
            more = put(rate.value().convert(samples)) && !samples.empty();
        }
    }
    const std::lock_guard lock(mutex_);
    ended_ = true;
}

/// Waits for room. False: the playing was ended.
bool Mp3PlayerSource::put(std::span<const sound::StereoFrame> frames) {
    std::unique_lock lock(mutex_);
    while (!stop_ && !frames.empty()) {
        frames = frames.subspan(queue_.push(frames));
        if (!frames.empty()) {
            room_.wait(lock);
        }
    }
    return !stop_;
}

} // namespace sonarith::mp3
