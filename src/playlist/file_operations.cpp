// SPDX-License-Identifier: GPL-3.0-or-later
#include "playlist/file_operations.h"

#include "platform/text/blanks.h"
#include "platform/text/wildcard.h"
#include "playlist/header_display.h"
#include "settings/destroy_file.h"
#include "settings/path_helpers.h"

namespace sonarith {

FileOperations::FileOperations(const Platform& platform, FrmPlayList& form,
                               PlaylistEntries& entries)
    : platform_(platform), form_(form), entries_(entries) {
    form_.Command2.onClick = [this] {
        Command2_Click();
    };
    form_.Command10.onClick = [this] {
        Command10_Click();
    };
}

std::string FileOperations::path() const {
    return withoutBlanksAround(form_.Text5.text());
}

// --- renaming -------------------------------------------------------------------------------

void FileOperations::Command2_Click() {
    if (!holdsOnlyBlanks(form_.Text5.text())) {
        renameFile().passOver();
    }
}

Status FileOperations::renameFile() {
    CommonDialog& dialog = form_.CommonDialog2;
    dialog.InitDir = path();
    const Result<std::string> name = FileBaseName(path());
    if (!name.ok()) {
        return name.error();
    }
    dialog.FileName = name.value();
    if (Status saved = dialog.ShowSave(
            platform_.fileDialog,
            {.title = "Rename File", .filter = "MP3|*.mp3|All files|*", .defaultExtension = "mp3"});
        !saved.ok()) {
        return saved;
    }
    const std::string target = dialog.FileName;
    if (target.empty()) {
        return {};
    }
    if (platform_.files.fileDate(target).ok()) {
        const BoxAnswer answer = platform_.boxes.show(
            "The filename you picked already exists. Do you want to overwrite the existing file?",
            BoxIcon::warning, BoxButtons::yesNoCancel, target);
        if (answer != BoxAnswer::yes) {
            return {};
        }
    }
    // Deliberate: fails if the target exists, even if the user has chosen to overwrite it.
    if (Status renamed = platform_.files.rename(path(), target); !renamed.ok()) {
        return renamed;
    }
    renameEntries(target);
    form_.Text5.setText(target);
    form_.Command20.click();
    return {};
}

/// Deliberate: changes only the list on the screen; the store keeps the old path until "Delist" or
/// a deletion writes all entries. After the first match Text5 contains the new path, so the
/// remaining entries are compared with the new path.
void FileOperations::renameEntries(const std::string& target) {
    for (int i = 0; i < form_.List2.listCount(); ++i) {
        if (matches(form_.Text5.text(), form_.List2.list(i))) {
            form_.List2.setList(i, target).passOver();
            form_.Text5.setText(target);
        }
    }
}

// --- deleting -------------------------------------------------------------------------------

void FileOperations::Command10_Click() {
    if (holdsOnlyBlanks(form_.Text5.text())) {
        return;
    }
    if (const Deletion deletion = deleteFile(); deletion != Deletion::over) {
        reportAndDelist(deletion).passOver();
    }
}

FileOperations::Deletion FileOperations::deleteFile() {
    if (!showLength().ok()) {
        return Deletion::broken;
    }
    if (form_.Text4(8).text().empty() || form_.Text4(8).text() == "0") {
        return deleteEmptyFile();
    }
    const BoxAnswer answer =
        platform_.boxes.show("Are you sure you want to delete this file?", BoxIcon::warning,
                             BoxButtons::yesNoCancel, "Delete File");
    if (answer != BoxAnswer::yes) {
        return Deletion::over;
    }
    p_DestroyFile(path(), platform_.files, platform_.loop).passOver();
    platform_.loop.yield();
    // This fails for a deleted file; Text4(8) then keeps the length from before the deletion.
    showLength().passOver();
    if (holdsOnlyBlanks(form_.Text4(8).text())) {
        platform_.boxes.show(noDataText);
        return Deletion::over;
    }
    return Deletion::tried;
}

FileOperations::Deletion FileOperations::deleteEmptyFile() {
    platform_.boxes.show(noDataText);
    if (!p_DestroyFile(path(), platform_.files, platform_.loop).ok()) {
        return Deletion::broken;
    }
    platform_.loop.yield();
    return Deletion::over;
}

Status FileOperations::reportAndDelist(Deletion deletion) {
    platform_.boxes.show(path() + " has been Deleted");
    platform_.loop.yield();
    if (Status shown = showLength(); !shown.ok() && deletion == Deletion::broken) {
        return shown;
    }
    selectEntry();
    // Deliberate: if no entry matches the edited file, CompactPlayList() removes the entry that was
    // selected before.
    if (Status compacted = entries_.CompactPlayList();
        !compacted.ok() && deletion == Deletion::broken) {
        return compacted;
    }
    clearDisplay();
    return {};
}

Status FileOperations::showLength() {
    const Result<std::int64_t> length = platform_.files.fileLength(path());
    if (!length.ok()) {
        return length.error();
    }
    form_.Text4(8).setText(std::to_string(length.value()));
    return {};
}

/// Selects the first entry that, used as a pattern, matches the edited path. If the selection
/// changes, List2's click handler runs and tries to read the entry's file, which may already be
/// deleted.
void FileOperations::selectEntry() {
    for (int i = 0; i < form_.List2.listCount(); ++i) {
        if (matches(form_.Text5.text(), form_.List2.list(i))) {
            form_.List2.setListIndex(i).passOver();
            return;
        }
    }
}

void FileOperations::clearDisplay() {
    form_.Text5.setText("");
    for (std::size_t number = 1; number <= 7; ++number) {
        form_.Text4(number).setText("");
    }
    form_.List1.clear();
    form_.Text4(8).setText("");
}

} // namespace sonarith
