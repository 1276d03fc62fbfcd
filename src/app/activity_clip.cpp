// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/activity_clip.h"

#include <string>

namespace sonarith {

namespace {
constexpr std::size_t replySize = 128;
} // namespace

void ActivityClip::Timeravi_Timer() {
    send("stop movie");
    send("close movie");
    const std::string path = platform_.files.programFolder() + "\\download.avi";
    send("open AVIvideo!" + path + " alias movie parent " +
         std::to_string(platform_.shell.windowHandle(form_.Picture6)) + " style child");
    if (send("put movie window client at 0 0 0 0") != mciSuccess) {
        platform_.boxes.show("Error! Probably file not found. Modify the code to point to an .AVI "
                             "file on your system.");
    }
    // Sent even if the earlier steps failed.
    send("play movie");
}

int ActivityClip::send(const std::string& command) {
    ReplyBuffer reply(replySize);
    return platform_.media.sendString(command, &reply);
}

} // namespace sonarith
