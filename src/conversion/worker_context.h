// SPDX-License-Identifier: GPL-3.0-or-later
// What the worker of one conversion works with, by reference. It owns nothing and does nothing.
#pragma once

#include "forms/form1.h"
#include "forms/windows.h"
#include "platform/active_mp3.h"
#include "platform/event_loop.h"
#include "platform/file_system.h"
#include "platform/mouse_pointer.h"
#include "settings/process_state.h"

namespace sonarith {

struct WorkerContext {
    EventLoop& loop;
    FileSystem& files;
    /// One long-lived control, held by one worker after the other.
    ActiveMP3& ActiveMP31;
    MousePointer& pointer;
    ProcessState& process;
    Form1& form;
    Form& Form6;
};

} // namespace sonarith
