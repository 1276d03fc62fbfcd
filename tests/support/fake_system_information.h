// SPDX-License-Identifier: GPL-3.0-or-later
// A SystemInformation for tests: the test can set each value. Initially the machine has one drive,
// the fixed drive C.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/system_information.h"

namespace sonarith::test {

class FakeSystemInformation final : public SystemInformation {
  public:
    struct Drive {
        DriveKind kind = DriveKind::fixed;
        std::optional<DiskSpace> space = DiskSpace{500'000'000'000, 200'000'000'000};
        std::optional<VolumeInformation> volume = VolumeInformation{};
    };
    /// The drives by root path ("C:\"), in the order of their letters.
    std::map<std::string, Drive> drives = {{"C:\\", {}}};
    MemoryStatus memory{50, 8'000'000'000, 4'000'000'000};
    ProcessorInformation processorNow{586, 2, 3};
    std::optional<SystemVersion> versionNow = SystemVersion{2, 6, 1};
    int keyboard = 4;
    int keys = 12;
    std::optional<std::string> temp;
    std::optional<std::string> system;
    std::optional<std::string> windows;
    std::optional<std::string> computer;
    std::optional<std::string> user;
    /// If set, called by logicalDriveStrings() to get the root paths; otherwise these are the keys
    /// of `drives`.
    std::function<std::vector<std::string>()> listOfRoots;
    /// Roots whose space was queried, in the order of the queries.
    mutable std::vector<std::string> spaceAsked;

    [[nodiscard]] std::size_t logicalDriveStrings(std::string& buffer,
                                                  std::size_t size) const override {
        std::string all;
        for (const std::string& root : listOfRoots ? listOfRoots() : roots()) {
            all += root + '\0';
        }
        if (all.size() + 1 > size) {
            return all.size() + 1;
        }
        buffer.replace(0, all.size() + 1, all + '\0');
        return all.size();
    }
    [[nodiscard]] std::optional<DiskSpace> diskSpace(const std::string& root) const override {
        spaceAsked.push_back(root);
        const auto found = drives.find(root);
        return found == drives.end() ? std::nullopt : found->second.space;
    }
    [[nodiscard]] DriveKind driveKind(const std::string& root) const override {
        const auto found = drives.find(root);
        return found == drives.end() ? DriveKind::noRoot : found->second.kind;
    }
    [[nodiscard]] std::optional<VolumeInformation>
    volumeInformation(const std::string& root) const override {
        const auto found = drives.find(root);
        return found == drives.end() ? std::nullopt : found->second.volume;
    }
    [[nodiscard]] MemoryStatus memoryStatus() const override { return memory; }
    [[nodiscard]] ProcessorInformation processor() const override { return processorNow; }
    [[nodiscard]] std::optional<SystemVersion> version() const override { return versionNow; }
    [[nodiscard]] int keyboardType() const override { return keyboard; }
    [[nodiscard]] int functionKeys() const override { return keys; }
    [[nodiscard]] std::optional<std::string> tempFolder() const override { return temp; }
    [[nodiscard]] std::optional<std::string> systemFolder() const override { return system; }
    [[nodiscard]] std::optional<std::string> windowsFolder() const override { return windows; }
    [[nodiscard]] std::optional<std::string> computerName() const override { return computer; }
    [[nodiscard]] std::optional<std::string> userName() const override { return user; }

  private:
    [[nodiscard]] std::vector<std::string> roots() const {
        std::vector<std::string> all;
        for (const auto& [root, drive] : drives) {
            all.push_back(root);
        }
        return all;
    }
};

} // namespace sonarith::test
