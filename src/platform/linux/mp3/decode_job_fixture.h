// SPDX-License-Identifier: GPL-3.0-or-later
// A test fixture that runs decodings in a temporary folder. For tests only.
#pragma once

#include <filesystem>
#include <iterator>
#include <memory>

#include <gmock/gmock.h>

#include "platform/linux/mp3/decode_job.h"
#include "platform/linux/mp3/mp3_fixture.h"
#include "support/temp_folder.h"
#include "support/waiting.h"

namespace sonarith::mp3::fixture {

inline void ignoreEnd(const DecodeResult& /*result*/) {}

/// Whether this process has the file open.
inline bool isOpen(const std::filesystem::path& path) {
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closedMeanwhile;
        if (std::filesystem::read_symlink(entry.path(), closedMeanwhile) == path) {
            return true;
        }
    }
    return false;
}

class DecodeJobTest : public testing::Test {
  protected:
    ~DecodeJobTest() override { EXPECT_TRUE(saves->awaitNone(std::chrono::seconds(30))); }
    std::unique_ptr<DecodeJob> start(const std::filesystem::path& to,
                                     const Division& division = {2, 16}) {
        return std::make_unique<DecodeJob>(DecodeOrder{source, to, division}, &ignoreEnd, saves);
    }
    static bool waitFor(const DecodeJob& job) {
        return fakes::eventually([&] { return job.over(); });
    }
    DecodeResult decode(const Data& data, const Division& division = {2, 16}) {
        writeFile(source, data);
        return decodeSource(division);
    }
    DecodeResult decodeSource(const Division& division = {2, 16}) {
        const auto job = start(target, division);
        EXPECT_TRUE(waitFor(*job));
        return job->result();
    }
    int entries() const {
        return static_cast<int>(
            std::distance(std::filesystem::directory_iterator(folder.path()), {}));
    }

    fakes::TempFolder folder;
    const std::shared_ptr<sound::PendingSaves> saves = std::make_shared<sound::PendingSaves>();
    const std::filesystem::path source = folder / "in.mp3";
    const std::filesystem::path target = folder / "out.wav";
};

} // namespace sonarith::mp3::fixture
