// SPDX-License-Identifier: GPL-3.0-or-later
// Creates a fake for each interface of a Platform, and the Platform that refers to them. Base class
// of most fixtures in this folder (..._world.h, ..._bench.h).
#pragma once

#include "platform/platform.h"
#include "support/fake_active_mp3.h"
#include "support/fake_directories.h"
#include "support/fake_file_dialog.h"
#include "support/fake_file_system.h"
#include "support/fake_message_boxes.h"
#include "support/fake_mixer.h"
#include "support/fake_mouse_pointer.h"
#include "support/fake_random.h"
#include "support/fake_settings_store.h"
#include "support/fake_shell.h"
#include "support/fake_system_information.h"
#include "support/fake_tray.h"
#include "support/fake_wave_input.h"
#include "support/scripted_media_control.h"
#include "support/virtual_event_loop.h"

namespace sonarith::test {

struct FakeMachine {
    FakeMachine() = default;
    FakeMachine(const FakeMachine&) = delete;
    FakeMachine& operator=(const FakeMachine&) = delete;

    VirtualEventLoop loop;
    ScriptedMediaControl media;
    FakeSettingsStore store;
    FakeFileSystem files;
    FakeDirectories directories;
    FakeMessageBoxes boxes;
    FakeMousePointer pointer;
    FakeRandom random;
    FakeShell shell;
    FakeMp3Controls mp3{loop, files};
    FakeFileDialog dialog;
    FakeMixer mixer;
    FakeWaveInput waveInput;
    FakeTray tray;
    FakeSystemInformation system;

    /// Objects that replace fakes in a Platform. A null pointer keeps the fake.
    struct OtherParts {
        EventLoop* loop = nullptr;
        MediaControl* media = nullptr;
        SettingsStore* store = nullptr;
        FileSystem* files = nullptr;
        MessageBoxes* boxes = nullptr;
        MousePointer* pointer = nullptr;
        Random* random = nullptr;
        Shell* shell = nullptr;
        Directories* directories = nullptr;
        Mp3Controls* mp3Controls = nullptr;
        FileDialog* fileDialog = nullptr;
        Mixer* mixer = nullptr;
        WaveInput* waveInput = nullptr;
        Tray* tray = nullptr;
        SystemInformation* system = nullptr;
    };
    /// The objects in `other`, and this object, must outlive the result.
    [[nodiscard]] Platform platformWith(const OtherParts& other) {
        const auto chosen = [](auto* part, auto& fake) -> decltype(*part) {
            return part != nullptr ? *part : fake;
        };
        return {
            .loop = chosen(other.loop, loop),
            .media = chosen(other.media, media),
            .store = chosen(other.store, store),
            .files = chosen(other.files, files),
            .boxes = chosen(other.boxes, boxes),
            .pointer = chosen(other.pointer, pointer),
            .random = chosen(other.random, random),
            .shell = chosen(other.shell, shell),
            .directories = chosen(other.directories, directories),
            .mp3Controls = chosen(other.mp3Controls, mp3),
            .fileDialog = chosen(other.fileDialog, dialog),
            .mixer = chosen(other.mixer, mixer),
            .waveInput = chosen(other.waveInput, waveInput),
            .tray = chosen(other.tray, tray),
            .system = chosen(other.system, system),
        };
    }

    Platform platform = platformWith({});
};

} // namespace sonarith::test
