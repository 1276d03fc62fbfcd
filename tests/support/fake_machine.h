// SPDX-License-Identifier: GPL-3.0-or-later
// A whole machine of fakes and its Platform. Base class of the worlds in which the jobs are tested.
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

    Platform platform{.loop = loop,
                      .media = media,
                      .store = store,
                      .files = files,
                      .boxes = boxes,
                      .pointer = pointer,
                      .random = random,
                      .shell = shell,
                      .directories = directories,
                      .mp3Controls = mp3,
                      .fileDialog = dialog,
                      .mixer = mixer,
                      .waveInput = waveInput,
                      .tray = tray,
                      .system = system};
};

} // namespace sonarith::test
