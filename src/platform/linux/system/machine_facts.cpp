// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/system/machine_facts.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <string>
#include <vector>

namespace sonarith::system_information {

namespace {

/// Removes and returns the number at the start of `text`. If `text` begins with no number, or with
/// one that is too large for `Number`, returns nothing and leaves `text` unchanged.
template <typename Number>
std::optional<Number> takeNumber(std::string_view& text, int base = 10) {
    Number number = 0;
    const auto outcome = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (outcome.ec != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(outcome.ptr - text.data()));
    return number;
}

bool takeCharacter(std::string_view& text, char wanted) {
    const bool there = text.starts_with(wanted);
    text.remove_prefix(there ? 1 : 0);
    return there;
}

/// The keys of a device, parsed from hexadecimal numbers. Each bit of a number stands for one of 64
/// keys; the first number contains the keys with the highest key numbers.
class KeySet {
  public:
    explicit KeySet(const std::string& words) {
        std::istringstream stream(words);
        for (std::string word; stream >> word;) {
            std::string_view digits = word;
            constexpr int hexadecimal = 16;
            words_.push_back(takeNumber<std::uint64_t>(digits, hexadecimal).value_or(0));
        }
        std::reverse(words_.begin(), words_.end());
    }
    [[nodiscard]] bool holds(std::size_t key) const {
        constexpr std::size_t bits = 64;
        return key / bits < words_.size() && ((words_[key / bits] >> (key % bits)) & 1U) != 0;
    }
    [[nodiscard]] int countOf(std::size_t first, std::size_t last) const {
        int count = 0;
        for (std::size_t key = first; key <= last; ++key) {
            count += holds(key) ? 1 : 0;
        }
        return count;
    }

  private:
    std::vector<std::uint64_t> words_;
};

/// The key numbers are those of the kernel's input-event-codes.h.
Keyboard keyboardOf(const KeySet& keys) {
    constexpr std::size_t letterQ = 16;
    constexpr std::size_t letterP = 25;
    constexpr int lettersOfTheRow = 10;
    Keyboard keyboard;
    keyboard.present = keys.countOf(letterQ, letterP) == lettersOfTheRow;
    // F13 to F24 are not counted: drivers report them for keyboards that do not have them.
    constexpr std::size_t f1 = 59, f10 = 68, f11 = 87, f12 = 88;
    keyboard.functionKeys = keyboard.present ? keys.countOf(f1, f10) + keys.countOf(f11, f12) : 0;
    return keyboard;
}

} // namespace

MemoryStatus memoryIn(std::string_view memInfo) {
    constexpr std::int64_t kilobyte = 1024;
    constexpr std::int64_t wholePercent = 100;
    MemoryStatus status;
    std::istringstream lines{std::string(memInfo)};
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        std::string name;
        std::int64_t amount = 0;
        fields >> name >> amount;
        if (name == "MemTotal:") {
            status.totalBytes = amount * kilobyte;
        } else if (name == "MemAvailable:") {
            status.availableBytes = amount * kilobyte;
        }
    }
    if (status.totalBytes > 0) {
        const std::int64_t used = status.totalBytes - status.availableBytes;
        status.loadPercent = static_cast<int>(used * wholePercent / status.totalBytes);
    }
    return status;
}

OnlineProcessors processorsIn(std::string_view list) {
    // No kernel supports more processors, so a list with more is invalid.
    constexpr int mostProcessors = 65536;
    constexpr int bits = 64;
    OnlineProcessors online;
    do {
        const auto first = takeNumber<int>(list);
        const auto last = first && takeCharacter(list, '-') ? takeNumber<int>(list) : first;
        if (!first || !last || *first < 0 || *last < *first || *last >= mostProcessors) {
            break;
        }
        online.count += *last - *first + 1;
        for (int processor = *first; processor <= *last && processor < bits; ++processor) {
            online.mask |= std::uint64_t{1} << static_cast<unsigned>(processor);
        }
    } while (takeCharacter(list, ','));
    return online;
}

Keyboard keyboardIn(std::string_view inputDevices) {
    constexpr std::string_view keysOf = "B: KEY=";
    Keyboard best;
    std::istringstream lines{std::string(inputDevices)};
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(keysOf)) {
            const Keyboard found = keyboardOf(KeySet(line.substr(keysOf.size())));
            best.present = best.present || found.present;
            best.functionKeys = std::max(best.functionKeys, found.functionKeys);
        }
    }
    return best;
}

std::optional<SystemVersion> versionIn(std::string_view release) {
    const auto major = takeNumber<int>(release);
    const auto minor =
        major && takeCharacter(release, '.') ? takeNumber<int>(release) : std::nullopt;
    if (!minor) {
        return std::nullopt;
    }
    // 2 is SystemInformation's platform number for systems with user accounts, permissions and
    // protected memory.
    return SystemVersion{2, *major, *minor};
}

} // namespace sonarith::system_information
