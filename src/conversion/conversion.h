// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the objects of the conversion, which decodes MP3 files to WAV, and connects them to the
// windows. This struct adds no behaviour.
#pragma once

#include "conversion/conversion_worker.h"
#include "conversion/decoding_driver.h"
#include "conversion/wav_head.h"
#include "forms/windows.h"
#include "platform/platform.h"
#include "settings/process_state.h"
#include "worktree/add_file.h"

namespace sonarith {

struct Conversion {
    /// All parameters must outlive this object.
    Conversion(const Platform& platform, ProcessState& process, Windows& windows, FileAdder& adder)
        : worker(platform, process, windows),
          driver(platform, process, windows, adder),
          wavHead(platform.files) {}

    ConversionWorker worker;
    DecodingDriver driver;
    WavHeadReader wavHead;
};

} // namespace sonarith
