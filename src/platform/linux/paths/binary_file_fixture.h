// SPDX-License-Identifier: GPL-3.0-or-later
// Fixtures for tests of opened files: they provide a folder d:\ with files on the machine's disk or
// in memory, so that the same test can check the program's two implementations of FileSystem and
// the fake one.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/paths/linux_file_system.h"
#include "platform/linux/paths/patient_fixture.h"
#include "support/fake_file_system.h"
#include "support/fake_settings_store.h"
#include "support/temp_folder.h"

namespace sonarith::test {

namespace fs = std::filesystem;

inline constexpr std::int64_t gibibyte = std::int64_t{1} << 30;
inline std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

/// Reads up to `count` bytes from `offset` on.
inline std::string textAt(BinaryFile& file, std::int64_t offset, std::size_t count) {
    std::vector<std::byte> buffer(count);
    const std::size_t got = file.read(offset, buffer).value();
    std::string text;
    for (std::size_t i = 0; i < got; ++i) {
        text += static_cast<char>(buffer[i]);
    }
    return text;
}

inline ErrorNumber readFailure(BinaryFile& file, std::int64_t offset) {
    std::array<std::byte, 4> buffer{};
    return file.read(offset, buffer).error().number;
}

/// A folder d:\ whose files are on the machine's disk or in memory.
struct BinaryWorld {
    virtual ~BinaryWorld() = default;
    virtual FileSystem& files() = 0;
    virtual void put(const std::string& name, const std::string& content) = 0;
    virtual void makeFolder(const std::string& name) = 0;
    /// std::nullopt if the file does not exist.
    virtual std::optional<std::string> content(const std::string& name) = 0;
};

class MachineWorld : public BinaryWorld {
  public:
    FileSystem& files() override { return files_; }
    void put(const std::string& name, const std::string& content) override {
        std::ofstream(disk() / name, std::ios::binary) << content;
    }
    void makeFolder(const std::string& name) override { fs::create_directory(disk() / name); }
    std::optional<std::string> content(const std::string& name) override {
        std::ifstream file(disk() / name, std::ios::binary);
        return file ? std::optional((std::stringstream() << file.rdbuf()).str()) : std::nullopt;
    }

    [[nodiscard]] fs::path disk() const { return folder_ / "disk"; }
    [[nodiscard]] const fs::path& parent() const { return folder_.path(); }
    [[nodiscard]] PathMap& paths() { return paths_; }

  private:
    std::string mountList() {
        fs::create_directories(disk());
        std::ofstream(folder_ / "mounts")
            << "1 0 8:1 / / rw - ext4 /dev/a rw\n"
            << "2 1 8:2 / " << disk().string() << " rw - ext4 /dev/b rw\n";
        return (folder_ / "mounts").string();
    }

    fakes::TempFolder folder_;
    FakeSettingsStore store_;
    DriveTable drives_{store_};
    MountInfo mounts_{mountList()};
    PathMap paths_{drives_, mounts_};
    LinuxFileSystem files_{paths_, disk().string()};
};

class PatientWorld final : public MachineWorld {
  public:
    FileSystem& files() override { return patient_.files; }

  private:
    FakeSettingsStore letters_;
    PatientMachine patient_{letters_, (parent() / "mounts").string(), disk().string()};
};

class FakeWorld final : public BinaryWorld {
  public:
    FakeWorld() { files_.addFolder("d:\\"); }
    FileSystem& files() override { return files_; }
    void put(const std::string& name, const std::string& content) override {
        files_.addFile("d:\\" + name, content);
    }
    void makeFolder(const std::string& name) override { files_.addFolder("d:\\" + name); }
    std::optional<std::string> content(const std::string& name) override {
        return files_.content("d:\\" + name);
    }

  private:
    FakeFileSystem files_;
};

template <typename World>
class BinaryFileTest : public testing::Test {
  protected:
    std::unique_ptr<BinaryFile> open(const std::string& name, FileAccess access) {
        auto opened = world_.files().openBinary("d:\\" + name, access);
        EXPECT_TRUE(opened.ok()) << name;
        return opened.ok() ? std::move(opened.value()) : nullptr;
    }
    ErrorNumber refusal(const std::string& name, FileAccess access) {
        return world_.files().openBinary("d:\\" + name, access).error().number;
    }

    World world_;
};

} // namespace sonarith::test
