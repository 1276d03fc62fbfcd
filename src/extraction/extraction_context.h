// SPDX-License-Identifier: GPL-3.0-or-later
// What every extraction job works with, by reference. It owns nothing.
#pragma once

#include "extraction/capture_state.h"
#include "forms/form1.h"
#include "platform/event_loop.h"
#include "platform/media_control.h"
#include "settings/process_state.h"

namespace sonarith {

struct ExtractionContext {
    EventLoop& loop;
    MediaControl& media;
    ProcessState& process;
    Form1& form;
    CaptureState& capture;
};

} // namespace sonarith
