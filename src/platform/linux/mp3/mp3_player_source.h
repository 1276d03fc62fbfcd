// SPDX-License-Identifier: GPL-3.0-or-later
// Sounds an MP3 file on a line of the sound card: a thread of its own decodes ahead into a small
// ring, from which the card pulls. It knows no card and writes no files.
#pragma once

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <span>
#include <thread>

#include "platform/linux/mp3/byte_source.h"
#include "platform/linux/sound/frame_queue.h"
#include "platform/linux/sound/sample_source.h"
#include "platform/result.h"

namespace sonarith::mp3 {

class Mp3PlayerSource : public sound::SampleSource {
  public:
    /// Fails if the file cannot be read. One without any frame is silence that ends at once.
    [[nodiscard]] static Result<std::shared_ptr<Mp3PlayerSource>>
    open(const std::filesystem::path& path);
    ~Mp3PlayerSource() override; ///< ends the thread
    Mp3PlayerSource(const Mp3PlayerSource&) = delete;
    Mp3PlayerSource& operator=(const Mp3PlayerSource&) = delete;

    [[nodiscard]] sound::Pulled pull(std::span<sound::StereoFrame> block) override;

  private:
    Mp3PlayerSource() = default;
    void decodeAll();
    [[nodiscard]] bool put(std::span<const sound::StereoFrame> frames);

    std::atomic<bool> stop_ = false;
    std::unique_ptr<FileSource> file_;

    std::mutex mutex_; ///< for what follows; held for copying alone
    std::condition_variable room_;
    /// Half a second ahead: decoding takes a hundredth of that.
    sound::FrameQueue queue_{sound::frameRate / 2};
    bool ended_ = false; ///< nothing is added to the queue any more

    std::thread thread_;
};

} // namespace sonarith::mp3
