// SPDX-License-Identifier: GPL-3.0-or-later
// Creates the conversion worker, the decoding driver and the main window with its work tree, and
// connects them as the program does. Time is virtual. Base class of the conversion's tests.
//
//     mp3File("c:\\mp3\\a.mp3");
//     fill(form.List2, {"c:\\mp3\\a.mp3"});
//     decode("MP3 Files");                         // returns when all files are decoded
//     EXPECT_THAT(mp3.finished, ElementsAre("c:\\music\\a.wav"));
#pragma once

#include <string>

#include "conversion/conversion.h"
#include "support/work_tree_world.h"

namespace sonarith::test {

struct ConversionWorld : WorkTreeWorld {
    /// The path of an MP3 file, and the two entries that its decoding adds to the log of the fake
    /// MP3 control (`mp3.log`).
    inline static const std::string source = "c:\\mp3\\Song.mp3";
    inline static const std::string setSource = "SourceFile c:\\mp3\\Song.mp3";
    inline static const std::string decodeToWav = "DecodeToWav c:\\music\\Song.wav";

    Conversion conversion{platform, process, windows, adder};
    DecodingDriver& driver = conversion.driver;
    sonarith::Form6& Form6 = windows.Form6;

    ConversionWorld() {
        disk.addFolder(destination);
        tree.showfiles();
    }

    void mp3File(const std::string& path, std::size_t bytes = 200) {
        disk.addFile(path, std::string(bytes, 'm'));
    }
    /// Selects the first node with this text. If there is no such node, first adds it under "MP3
    /// Files".
    void choose(const std::string& text) {
        NodeRef at = node(text);
        if (!at) {
            at = addItem(view, node("MP3 Files"), "p " + text, text).value();
        }
        view.setSelectedItem(at).passOver();
    }
    void decode(const std::string& text) {
        choose(text);
        form.CmdDecoder.click();
    }
};

} // namespace sonarith::test
