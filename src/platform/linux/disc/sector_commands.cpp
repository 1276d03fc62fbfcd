// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/disc/sector_commands.h"

#include <algorithm>
#include <utility>

#include "platform/linux/disc/disc.h"

namespace sonarith::disc {

SectorCommands::SectorCommands(Command command) : command_(std::move(command)) {}

void SectorCommands::setBounds(std::int64_t first, std::int64_t end) {
    first_ = first;
    end_ = end;
}

void SectorCommands::setMayGoOn(std::function<bool()> mayGoOn) {
    mayGoOn_ = std::move(mayGoOn);
}

bool SectorCommands::mayGoOn() const {
    return !mayGoOn_ || mayGoOn_();
}

std::int64_t SectorCommands::readSingly(std::int64_t first, std::int64_t count, std::byte* out) {
    std::int64_t done = 0;
    while (done < count && mayGoOn() && command_(first + done, 1, out + done * bytesPerSector)) {
        ++done;
    }
    return done;
}

std::int64_t SectorCommands::read(std::int64_t first, std::int64_t count, std::byte* out) {
    if (first < first_) {
        return 0;
    }
    count = std::min(count, end_ - first);
    std::int64_t done = 0;
    while (done < count && mayGoOn()) {
        const std::int64_t sectors = std::min(count - done, perCommand_);
        std::byte* const place = out + done * bytesPerSector;
        if (command_(first + done, sectors, place)) {
            done += sectors;
        } else if (perCommand_ > fewSectors && sectors > fewSectors) {
            // The cause of the failure may be the size of the command and not the disc. Later
            // commands keep the small size, since it costs little.
            perCommand_ = fewSectors;
        } else {
            const std::int64_t single = readSingly(first + done, sectors, place);
            done += single;
            if (single < sectors) {
                break;
            }
        }
    }
    return done;
}

} // namespace sonarith::disc
