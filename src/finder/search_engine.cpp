// SPDX-License-Identifier: GPL-3.0-or-later
#include "finder/search_engine.h"

#include <array>
#include <charconv>
#include <limits>
#include <memory>

#include "platform/text/unicode.h"

namespace sonarith {

namespace {

constexpr const char* allEntries = "*.*";

/// findfilesdir() ignores an entry that has an attribute other than these four. Their sum is 54.
constexpr std::uint32_t listedAttributes = file_attribute::hidden | file_attribute::system |
                                           file_attribute::directory | file_attribute::archive;

/// Returns `path` without surrounding blanks and with a trailing backslash.
std::string folderPath(const std::string& path) {
    const std::size_t first = path.find_first_not_of(' ');
    std::string folder = first == std::string::npos
                             ? std::string()
                             : path.substr(first, path.find_last_not_of(' ') - first + 1);
    return folder.ends_with('\\') ? folder : folder + "\\";
}

/// Seconds with at most seven significant digits, the precision of a single-precision number.
std::string secondsText(float seconds) {
    constexpr int digits = 7;
    std::array<char, 32> text{}; // sign, digits, point and exponent need 13 at most
    const auto end = std::to_chars(text.data(), text.data() + text.size(), seconds,
                                   std::chars_format::general, digits);
    return {text.data(), end.ptr};
}

} // namespace

SearchEngine::WindowLoad SearchEngine::presentLoad() {
    finder_.touch();
    return finder_.timesLoaded();
}

bool SearchEngine::isOpen(WindowLoad load) const {
    return finder_.loaded() && finder_.timesLoaded() == load;
}

void SearchEngine::SearchFiles() {
    const WindowLoad load = presentLoad();
    begin();
    const double startSeconds = loop_.secondsSinceMidnight();
    const std::string start = finder_.Dir1.path();
    const std::string startFolder = start.ends_with('\\') ? start : start + "\\";
    finder_.lstdirs.addItem(startFolder);
    finder_.List1.addItem(startFolder);
    // A typed "*.*" becomes ".*.*" here, which matches no file.
    if (!finder_.zFileExt.text().starts_with('.')) {
        finder_.zFileExt.setText("." + finder_.zFileExt.text());
    }
    const std::unique_ptr<DirectoryWalk> walk = directories_.startWalk();
    do {
        std::string folder = finder_.lstdirs.list(0);
        finder_.lbltime.setCaption("Searching . . . " + folder);
        findfilesapi(*walk, folder, allEntries);
        if (!isOpen(load)) {
            return;
        }
        finder_.lstdirs.removeItem(0).passOver();
    } while (finder_.lstdirs.listCount() > 0);
    finish(startSeconds);
}

void SearchEngine::begin() {
    finder_.Label1.setCaption("");
    finder_.Command1.setEnabled(true);
    finder_.Drive1.setEnabled(false);
    finder_.lstfiles.clear();
    finder_.Text1.setEnabled(false);
    finder_.zFileExt.setEnabled(false);
}

void SearchEngine::finish(double startSeconds) {
    finder_.lstdirs.setVisible(true);
    finder_.lstfiles.setVisible(true);
    countFiles(finder_);
    // The time is negative if the search ran past midnight.
    const auto elapsed = static_cast<float>(loop_.secondsSinceMidnight() - startSeconds);
    finder_.lbltime.setCaption("Time taken: " + secondsText(elapsed) + " second(s)");
    finder_.Command1.setCaption(searchCaption);
    showSummary(finder_);
    reopenControls(finder_);
    finder_.List1.setVisible(true);
    finder_.lstfiles.setVisible(true);
}

void SearchEngine::findfilesapi(DirectoryWalk& walk, std::string& path,
                                const std::string& pattern) {
    const WindowLoad load = presentLoad();
    path = folderPath(path);
    FindRecord entry;
    const FindHandle handle = walk.FindFirst(path + pattern, entry);
    // `handle` is not 0 even if FindFirst() failed; the first FindNext() then ends the loop.
    if (handle != 0) {
        takeFirstEntry(path, entry);
        std::string ext;
        for (;;) {
            loop_.yield();
            if (!isOpen(load) || !walk.FindNext(handle, entry)) {
                break;
            }
            if ((entry.attributes & file_attribute::directory) != 0) {
                queueFolder(path, entry.name, Counting::yes);
            } else {
                takeFile(path, entry.name, ext);
            }
        }
    }
    walk.FindClose(handle);
}

void SearchEngine::queueFolder(const std::string& path, const std::string& name,
                               Counting counting) {
    if (name.starts_with('.')) {
        return;
    }
    // In lstdirs the folder is inserted after the current folder, so the folder that was found last
    // is scanned next. After a stop lstdirs is empty, and this insertion fails.
    const std::string folder = lowerCase(path + name + "\\");
    finder_.lstdirs.addItem(folder, 1).passOver();
    finder_.List1.addItem(folder, 1).passOver();
    if (counting == Counting::yes && finder_.DirCount < std::numeric_limits<std::int16_t>::max()) {
        ++finder_.DirCount;
    }
}

/// Deliberate: the first entry of a folder is handled differently. If it is a folder, it is not
/// counted; if it is a file, only its extension is compared, and the name in Text1 is ignored.
void SearchEngine::takeFirstEntry(const std::string& path, const FindRecord& entry) {
    if ((entry.attributes & file_attribute::directory) != 0) {
        queueFolder(path, entry.name, Counting::no);
        return;
    }
    if (entry.name.empty()) {
        return; // FindFirst() failed
    }
    const std::string full = path + entry.name;
    if (const auto dot = full.find('.'); dot != std::string::npos) {
        finder_.zFileExt2.setText(lowerCase(full.substr(dot)));
    }
    if (finder_.zFileExt.text() == finder_.zFileExt2.text()) {
        finder_.lstfiles.addItem(lowerCase(full));
    }
}

void SearchEngine::takeFile(const std::string& path, const std::string& name, std::string& ext) {
    const std::string full = path + name;
    // Deliberate: the extension starts at the first dot of the whole path, not at the last dot of
    // the name. So a search for ".mp3" finds neither "a.b.mp3", whose extension is ".b.mp3", nor
    // any file in a folder whose name has a dot. If the path has no dot, the extension of the
    // previous file in this folder is kept.
    if (const auto dot = full.find('.'); dot != std::string::npos) {
        ext = full.substr(dot);
    }
    // Text2 gets the part of the name before the first dot, or the whole name if it has no dot.
    finder_.Text2.setText(lowerCase(name.substr(0, name.find('.'))));
    finder_.zFileExt2.setText(lowerCase(ext));
    if (isWanted()) {
        finder_.lstfiles.addItem(lowerCase(full));
    }
}

/// Whether the entry whose name and extension are in Text2 and zFileExt2 matches the current
/// content of the search boxes Text1 and zFileExt.
bool SearchEngine::isWanted() const {
    const std::string& wanted = finder_.zFileExt.text();
    const bool rightType = wanted == finder_.zFileExt2.text();
    const std::string& name = finder_.Text1.text();
    return wanted == allEntries || (rightType && name.empty()) ||
           (rightType && finder_.Text2.text() == lowerCase(name));
}

void SearchEngine::findfilesdir(DirectoryWalk& walk, std::string& path,
                                const std::string& pattern) {
    const WindowLoad load = presentLoad();
    path = folderPath(path);
    FindRecord entry;
    const FindHandle handle = walk.FindFirst(path + pattern, entry);
    for (bool found = handle != 0 && handle != invalidFindHandle; found;
         found = walk.FindNext(handle, entry)) {
        if ((entry.attributes & ~listedAttributes) != 0) {
            continue;
        }
        loop_.yield();
        if (!isOpen(load)) {
            break;
        }
        if ((entry.attributes & file_attribute::directory) != 0) {
            queueFolder(path, entry.name, Counting::yes);
        } else {
            finder_.lstfiles.addItem(lowerCase(path + entry.name));
        }
    }
    walk.FindClose(handle);
}

} // namespace sonarith
