// SPDX-License-Identifier: GPL-3.0-or-later
// References to all interfaces through which the logic uses the machine: one struct to pass, with
// the real implementations or with a test's. It owns nothing and has no behaviour.
#pragma once

#include "platform/active_mp3.h"
#include "platform/directory_walk.h"
#include "platform/event_loop.h"
#include "platform/file_dialog.h"
#include "platform/file_system.h"
#include "platform/media_control.h"
#include "platform/message_box.h"
#include "platform/mixer.h"
#include "platform/mouse_pointer.h"
#include "platform/random.h"
#include "platform/settings_store.h"
#include "platform/shell.h"
#include "platform/system_information.h"
#include "platform/tray.h"
#include "platform/wave_input.h"

namespace sonarith {

/// All members of these interfaces are called on the logic's thread only, unless their header says
/// otherwise.
/// Initialized by member names: Platform{.loop = loop, .media = media, ...}.
struct Platform {
    EventLoop& loop;
    MediaControl& media;
    SettingsStore& store;
    FileSystem& files;
    MessageBoxes& boxes;
    MousePointer& pointer;
    Random& random;
    Shell& shell;
    Directories& directories;
    Mp3Controls& mp3Controls;
    FileDialog& fileDialog;
    Mixer& mixer;
    WaveInput& waveInput;
    Tray& tray;
    SystemInformation& system;
};

} // namespace sonarith
