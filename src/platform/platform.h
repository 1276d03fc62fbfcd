// SPDX-License-Identifier: GPL-3.0-or-later
// A struct of references to all interfaces through which the logic uses the machine. The references
// are to the real implementations or to those of a test. The struct owns nothing and has no
// behaviour.
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

/// The members of these interfaces are called on the logic thread only, unless the interface's
/// header says otherwise. Initialize this struct by member names: Platform{.loop = loop, ...}.
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
