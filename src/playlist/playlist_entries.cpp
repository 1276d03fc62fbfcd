// SPDX-License-Identifier: GPL-3.0-or-later
#include "playlist/playlist_entries.h"

#include <cstdint>

#include "platform/centred_form.h"
#include "platform/text/blanks.h"
#include "platform/text/numbers.h"
#include "platform/text/wildcard.h"

namespace sonarith {

namespace {

constexpr const char* countKey = "HowMany";
/// The default value of every key; an entry with this value counts as missing.
constexpr const char* missing = "0";
constexpr const char* emptyLine = "Empty";

/// Reading ends after this many missing entries: ten times the number of entries for which the
/// window is designed. A damaged count would otherwise fill the list and the memory with "Empty"
/// lines. The number of existing entries is not limited.
constexpr std::int32_t mostMissingEntries = 100'000;

std::string readText(const SettingsStore& store, const std::string& key) {
    return store.GetSetting(applicationName, playlistSection, key, missing);
}

/// Calls `take` with the key and the value of each entry, from 1 to the stored count. The value of
/// a missing entry is `missing`. A stored count that is not a 32-bit number counts as 0.
template <typename Take>
void forEachEntry(const SettingsStore& store, Take take) {
    const std::int32_t count = toInteger32(readText(store, countKey)).valueOr(0);
    std::int32_t missingEntries = 0;
    for (std::int32_t i = 0; i < count && missingEntries < mostMissingEntries; ++i) {
        const std::string key = std::to_string(i + 1);
        const std::string value = readText(store, key);
        missingEntries += value == missing ? 1 : 0;
        take(key, value);
    }
}

bool isMp3(const std::string& entry) {
    return entry.ends_with("mp3") || entry.ends_with("MP3");
}

} // namespace

std::vector<std::string> playlistPathKeys(const SettingsStore& store) {
    std::vector<std::string> keys;
    forEachEntry(store, [&](const std::string& key, const std::string&) { keys.push_back(key); });
    return keys;
}

PlaylistEntries::PlaylistEntries(const Platform& platform, FrmPlayList& form)
    : platform_(platform), form_(form) {
    form_.onLoad = [this] {
        Form_Load();
    };
    form_.Command20.onClick = [this] {
        Command20_Click();
    };
    form_.Command6.onClick = [this] {
        Command6_Click();
    };
}

void PlaylistEntries::Form_Load() {
    centreOnScreen(form_, platform_.shell);
    LoadPlayList();
}

void PlaylistEntries::LoadPlayList() {
    forEachEntry(platform_.store, [this](const std::string&, const std::string& entry) {
        form_.List2.addItem(entry == missing ? emptyLine : entry);
    });
}

void PlaylistEntries::Command20_Click() {
    const std::string path = form_.Text5.text();
    if (holdsOnlyBlanks(path)) {
        return;
    }
    ListBox& list = form_.List2;
    for (int i = 0; i < list.listCount(); ++i) {
        // The entry is the pattern, so an entry with "[" may not match an equal path.
        if (matches(path, list.list(i))) {
            return;
        }
    }
    {
        const StoreTransaction oneStep(platform_.store);
        list.addItem(path);
        saveCount();
        save(std::to_string(list.listCount()), path);
    }
    form_.Text5.setText("");
}

void PlaylistEntries::Command6_Click() {
    const StoreTransaction oneStep(platform_.store);
    removeSelected().passOver();
    moveMp3EntriesOut(Counting::atTheEnd);
    moveEntriesBack();
}

Status PlaylistEntries::CompactPlayList() {
    const StoreTransaction oneStep(platform_.store);
    if (Status removed = removeSelected(); !removed.ok()) {
        return removed;
    }
    moveMp3EntriesOut(Counting::atEachRound);
    moveEntriesBack();
    return {};
}

Status PlaylistEntries::removeSelected() {
    const int selected = form_.List2.listIndex();
    // Deliberate: the index counts from 0 and the keys from 1, so this empties the key of the entry
    // before the selected one. For the first entry, the emptied key is "0", and without a selection
    // "-1"; no entry has these keys. moveEntriesBack() later writes the keys of all remaining
    // entries.
    save(std::to_string(selected), "");
    return form_.List2.removeItem(selected);
}

/// Moves the MP3 entries to List3 and drops all others.
void PlaylistEntries::moveMp3EntriesOut(Counting counting) {
    ListBox& list = form_.List2;
    form_.List3.clear();
    const bool countAtTheEnd = counting == Counting::atTheEnd || list.listCount() == 0;
    while (list.listCount() > 0) {
        if (const std::string entry = list.list(0); isMp3(entry)) {
            form_.List3.addItem(entry);
        }
        list.removeItem(0).passOver();
        if (counting == Counting::atEachRound) {
            saveCount();
        }
    }
    if (countAtTheEnd) {
        saveCount();
    }
}

void PlaylistEntries::moveEntriesBack() {
    const int rounds = form_.List3.listCount();
    for (int i = 0; i < rounds; ++i) {
        const std::string entry = form_.List3.list(0);
        form_.List2.addItem(entry);
        saveCount();
        save(std::to_string(form_.List2.listCount()), entry);
        form_.List3.removeItem(0).passOver();
    }
}

void PlaylistEntries::save(const std::string& key, const std::string& value) {
    platform_.store.SaveSetting(applicationName, playlistSection, key, value);
}

void PlaylistEntries::saveCount() {
    save(countKey, std::to_string(form_.List2.listCount()));
}

} // namespace sonarith
