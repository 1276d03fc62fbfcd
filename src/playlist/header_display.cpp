// SPDX-License-Identifier: GPL-3.0-or-later
#include "playlist/header_display.h"

#include "formats/mp3_analysis.h"
#include "platform/text/blanks.h"
#include "settings/least_file_length.h"

namespace sonarith {

namespace {

/// The length of the file; 0 for a missing or unreadable file. fileLength() alone would succeed for
/// an unreadable file.
std::int64_t readableLength(FileSystem& files, const std::string& path) {
    const std::int64_t length = files.fileLength(path).valueOr(0);
    return length > 0 && files.openBinary(path, FileAccess::read).ok() ? length : 0;
}

} // namespace

HeaderDisplay::HeaderDisplay(const Platform& platform, FrmPlayList& form)
    : platform_(platform), form_(form) {
    form_.cmdHdr1.onClick = [this] {
        cmdHdr1_Click();
    };
    form_.cmdHdr2.onClick = [this] {
        cmdHdr2_Click();
    };
}

void HeaderDisplay::cmdHdr1_Click() {
    platform_.pointer.set(Pointer::hourglass);
    CommonDialog& dialog = form_.CommonDialog2;
    dialog.InitDir = withoutBlanksAround(form_.Text5.text());
    const Status opened = dialog.ShowOpen(
        platform_.fileDialog, {.title = "Select MP3 file", .filter = "MP3|*.mp3|All files|*"});
    // After a cancel the dialog still has the previous name.
    if (!dialog.FileName.empty()) {
        if (opened.ok() || opened.error().number != ErrorNumber::dialogCancelled) {
            form_.Text5.setText(dialog.FileName);
            if (const auto length = platform_.files.fileLength(dialog.FileName); length.ok()) {
                form_.Text4(8).setText(std::to_string(length.value()) + " bytes");
            }
        }
        form_.cmdHdr2.click();
    }
    platform_.pointer.set(Pointer::normal);
}

void HeaderDisplay::cmdHdr2_Click() {
    if (holdsOnlyBlanks(form_.Text5.text())) {
        return;
    }
    form_.List1.clear();
    for (std::size_t number = 1; number <= 6; ++number) {
        form_.Text4(number).setText("");
    }
    Mp3Path_ = withoutBlanksAround(form_.Text5.text());
    const std::int64_t length = readableLength(platform_.files, Mp3Path_);
    if (length < leastFileLength) {
        platform_.boxes.show(noDataText);
        form_.Text5.setText("");
        return;
    }
    form_.Text4(8).setText(std::to_string(length) + " bytes");
    GetMp3Info(platform_.files, Mp3Path_, TagReading::yes, HeaderReading::yes, Mp3Info_).passOver();
    form_.List1.clear();
    platform_.loop.yield();
    showHeader();
    showTag();
}

void HeaderDisplay::showHeader() {
    const Mp3Info& info = Mp3Info_;
    // The labels are padded with blanks that align the values in one particular proportional font.
    // The view only needs two blanks or more to separate label and value.
    for (const std::string& line : {
             "Bitrate            " + std::to_string(info.Bitrate),
             "Frequency       " + std::to_string(info.Frequency),
             "Duration          " + std::to_string(info.Duration),
             "MpegVersion   " + std::to_string(info.MpegVersion),
             "MpegLayer      " + std::to_string(info.MpegLayer),
             "Original           " + info.Original,
             "Emphasis        " + info.Emphasis,
             "CopyRight        " + info.CopyRight,
             "Mode               " + info.Mode,
             "Padding           " + info.Padding,
             "CRC                " + info.CRC,
             "Private             " + info.Private,
         }) {
        form_.List1.addItem(line);
    }
}

void HeaderDisplay::showTag() {
    const Mp3Info& info = Mp3Info_;
    form_.Text4(1).setText(info.Artist);
    form_.Text4(2).setText(info.Title);
    form_.Text4(3).setText(info.Album);
    form_.Text4(4).setText(info.Year);
    form_.Text4(5).setText(info.Comment);
    form_.Text4(6).setText(std::to_string(info.Genre));
    form_.Text4(7).setText(info.HasTag ? "True" : "False");
}

} // namespace sonarith
