// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/qt/qt_file_dialog.h"

#include <fstream>

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>

#include "support/must_run.h"
#include "support/temp_folder.h"

#include "platform/qt/dialog_loop.h"

namespace sonarith {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class QtFileDialogTest : public testing::Test {
  protected:
    QtFileDialogTest() {
        for (const char* name : {"one.wav", "TWO.WAV", "three.Mp3", "four.txt"}) {
            std::ofstream(folder.path() / name) << "x";
        }
    }

    /// Runs `act` on the next dialog as soon as the dialog is open. Then cancels the dialog if
    /// `act` has not closed it.
    void onDialog(std::function<void(QFileDialog&)> act) {
        const std::function<void()> onTimer = test::mustRun([act = std::move(act)] {
            auto* shown = qobject_cast<QFileDialog*>(runningDialog());
            ASSERT_NE(shown, nullptr);
            act(*shown);
            if (shown->isVisible()) {
                shown->reject();
            }
        });
        // The timer belongs to `context`, so that it is destroyed before the test ends.
        auto* timer = new QTimer(&context);
        timer->setSingleShot(true);
        QObject::connect(timer, &QTimer::timeout, &context, onTimer);
        timer->start(0);
    }
    static void type(QFileDialog& shown, const std::string& name) {
        auto* line = shown.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        ASSERT_NE(line, nullptr);
        // Types key by key into the text field while it has the focus: otherwise the dialog does
        // not treat the text as typed.
        EXPECT_TRUE(QTest::qWaitForWindowActive(&shown));
        line->setFocus();
        line->selectAll();
        QTest::keyClicks(line, QString::fromStdString(name));
        QTest::keyClick(line, Qt::Key_Return);
    }
    /// Waits until the list of files has at least `count` entries, and returns the list.
    static QListView& filledList(QFileDialog& shown, int count) {
        auto* view = shown.findChild<QListView*>(QStringLiteral("listView"));
        // The dialog reads the folder on another thread.
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return view->model()->rowCount(view->rootIndex()) >= count; }));
        return *view;
    }
    [[nodiscard]] std::string machine(const std::string& name) const {
        return (folder.path() / name).string();
    }
    [[nodiscard]] static ErrorNumber numberOf(const Result<std::string>& result) {
        EXPECT_FALSE(result.ok());
        return result.ok() ? ErrorNumber{} : result.error().number;
    }

    QObject context;
    fakes::TempFolder folder;
    /// In these tests, a path of the logic is "L:" followed by the machine path.
    QtFileDialog dialog{
        [](const std::string& logic) { return logic.substr(logic.empty() ? 0 : 2); },
        [](const std::string& path) {
            return "L:" + path;
        }};
    FileDialogRequest request{.title = "Select WAV or MP3 file",
                              .filter = "WAV, MP3|*.wav;*.mp3",
                              .defaultExtension = "wav",
                              .fileName = "L:" + machine("one.wav")};
};

TEST_F(QtFileDialogTest, ShowsTheTitleTheFilterAndTheFileOfTheRequest) {
    onDialog([&](QFileDialog& shown) {
        EXPECT_EQ(shown.windowTitle(), "Select WAV or MP3 file");
        EXPECT_EQ(shown.nameFilters(), QStringList{"WAV, MP3 (*.wav *.mp3)"});
        EXPECT_EQ(shown.defaultSuffix(), "wav");
        EXPECT_EQ(shown.selectedFiles(), QStringList{QString::fromStdString(machine("one.wav"))});
    });
    static_cast<void>(dialog.open(request));
}

TEST_F(QtFileDialogTest, ReturnsTheChosenFileAsAPathOfTheLogic) {
    onDialog([&](QFileDialog& shown) { type(shown, "TWO.WAV"); });
    const auto chosen = dialog.open(request);
    ASSERT_TRUE(chosen.ok());
    EXPECT_EQ(chosen.value(), "L:" + machine("TWO.WAV"));
}

TEST_F(QtFileDialogTest, TheReturnKeyAcceptsTheFileOfTheRequest) {
    onDialog([&](QFileDialog& shown) {
        auto* line = shown.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        ASSERT_NE(line, nullptr);
        EXPECT_EQ(line->text(), "one.wav");
        QTest::keyClick(line, Qt::Key_Return);
    });
    EXPECT_EQ(dialog.open(request).valueOr("failed"), "L:" + machine("one.wav"));
}

TEST_F(QtFileDialogTest, TheFilterIgnoresTheCaseOfFileNames) {
    std::vector<std::string> names;
    onDialog([&](QFileDialog& shown) {
        QListView& view = filledList(shown, 3);
        for (int row = 0; row < view.model()->rowCount(view.rootIndex()); ++row) {
            const QModelIndex index = view.model()->index(row, 0, view.rootIndex());
            names.push_back(index.data().toString().toStdString());
        }
    });
    static_cast<void>(dialog.open(request));
    EXPECT_THAT(names, UnorderedElementsAre("one.wav", "TWO.WAV", "three.Mp3"));
}

TEST_F(QtFileDialogTest, TheNameOfAFileOfAnotherTypeMayBeTyped) {
    onDialog([&](QFileDialog& shown) { type(shown, "four.txt"); });
    EXPECT_EQ(dialog.open(request).valueOr("failed"), "L:" + machine("four.txt"));
}

TEST_F(QtFileDialogTest, ATypedNameWithoutAnExtensionGetsTheDefaultExtension) {
    onDialog([&](QFileDialog& shown) { type(shown, "one"); });
    EXPECT_EQ(dialog.open(request).valueOr("failed"), "L:" + machine("one.wav"));
}

TEST_F(QtFileDialogTest, NamesWithBlanksBracketsAndNonAsciiLettersAreUnchanged) {
    const std::string name = "it's  Größe [1] 音.wav";
    std::ofstream(folder.path() / name) << "x";
    request.fileName = "L:" + machine(name);
    onDialog([&](QFileDialog& shown) {
        QTest::keyClick(shown.findChild<QLineEdit*>(QStringLiteral("fileNameEdit")),
                        Qt::Key_Return);
    });
    EXPECT_EQ(dialog.open(request).valueOr("failed"), "L:" + machine(name));
}

TEST_F(QtFileDialogTest, ANameWithQuotesIsNotShownInTheTextFieldButCanBeChosenInTheList) {
    const std::string name = "a \"b\".wav";
    std::ofstream(folder.path() / name) << "x";
    request.fileName = "L:" + machine(name);
    onDialog([&](QFileDialog& shown) {
        EXPECT_EQ(shown.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text(), "");
        QListView& view = filledList(shown, 4);
        for (int row = 0; row < view.model()->rowCount(view.rootIndex()); ++row) {
            const QModelIndex index = view.model()->index(row, 0, view.rootIndex());
            if (index.data().toString().toStdString() == name) {
                view.setCurrentIndex(index);
            }
        }
        shown.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
    });
    EXPECT_EQ(dialog.open(request).valueOr("failed"), "L:" + machine(name));
}

TEST_F(QtFileDialogTest, EachWayToCancelTheDialogReturnsError32755) {
    const std::function<void(QFileDialog&)> ways[] = {
        [](QFileDialog& shown) { shown.reject(); },
        [](QFileDialog& shown) { QTest::keyClick(&shown, Qt::Key_Escape); },
        [](QFileDialog& shown) { shown.close(); },
    };
    for (const auto& way : ways) {
        onDialog(way);
        EXPECT_EQ(static_cast<int>(numberOf(dialog.open(request))), 32755);
    }
}

TEST_F(QtFileDialogTest, ReturnsBadFileNameForAFileWithoutAPathOfTheLogic) {
    QtFileDialog lost([](const std::string&) { return std::string(); },
                      [](const std::string&) { return std::string(); });
    onDialog([&](QFileDialog& shown) {
        shown.setDirectory(QString::fromStdString(folder.path().string()));
        type(shown, "one.wav");
    });
    EXPECT_EQ(numberOf(lost.open(request)), ErrorNumber::badFileName);
}

TEST_F(QtFileDialogTest, OpensInTheLastFolderIfTheRequestIsEmpty) {
    onDialog([&](QFileDialog& shown) {
        shown.setDirectory(QString::fromStdString(folder.path().string()));
    });
    static_cast<void>(dialog.open({}));
    QString folderShown;
    onDialog([&](QFileDialog& shown) { folderShown = shown.directory().absolutePath(); });
    static_cast<void>(dialog.open({}));
    EXPECT_EQ(folderShown.toStdString(), folder.path().string());
}

TEST_F(QtFileDialogTest, EventsAreHandledWhileTheDialogIsOpen) {
    int ticks = 0;
    QTimer ticking;
    QObject::connect(&ticking, &QTimer::timeout, [&] {
        auto* shown = qobject_cast<QFileDialog*>(runningDialog());
        if (shown && ++ticks == 3) {
            shown->reject();
        }
    });
    ticking.start(1);
    static_cast<void>(dialog.open(request));
    EXPECT_EQ(ticks, 3);
}

TEST_F(QtFileDialogTest, OpensInTheInitialFolderWithAnEmptyName) {
    const FileDialogRequest inFolder{.initialFolder = "L:" + folder.path().string()};
    onDialog([&](QFileDialog& shown) {
        EXPECT_EQ(shown.directory().absolutePath().toStdString(), folder.path().string());
        auto* line = shown.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        ASSERT_NE(line, nullptr);
        EXPECT_EQ(line->text(), "");
    });
    static_cast<void>(dialog.open(inFolder));
}

TEST_F(QtFileDialogTest, OpensInTheFolderOfAFileThatIsGivenAsInitialFolder) {
    const FileDialogRequest inFolder{.initialFolder = "L:" + machine("one.wav")};
    onDialog([&](QFileDialog& shown) {
        EXPECT_EQ(shown.directory().absolutePath().toStdString(), folder.path().string());
    });
    static_cast<void>(dialog.open(inFolder));
}

TEST_F(QtFileDialogTest, OpensInTheLastFolderIfTheInitialFolderHasNoMachinePath) {
    onDialog([](QFileDialog&) {});
    static_cast<void>(dialog.open(request));
    onDialog([&](QFileDialog& shown) {
        EXPECT_EQ(shown.directory().absolutePath().toStdString(), folder.path().string());
    });
    static_cast<void>(dialog.open({.initialFolder = "L:"}));
}

TEST_F(QtFileDialogTest, SavesUnderANewName) {
    onDialog([&](QFileDialog& shown) {
        EXPECT_EQ(shown.acceptMode(), QFileDialog::AcceptSave);
        type(shown, "new.mp3");
    });
    EXPECT_EQ(dialog.save(request).valueOr("failed"), "L:" + machine("new.mp3"));
}

// The logic asks before it replaces a file, so the dialog must not ask a second time.
TEST_F(QtFileDialogTest, SavesUnderAnExistingNameWithoutAQuestion) {
    onDialog([&](QFileDialog& shown) { type(shown, "TWO.WAV"); });
    EXPECT_EQ(dialog.save(request).valueOr("failed"), "L:" + machine("TWO.WAV"));
}

TEST_F(QtFileDialogTest, ACancelledSaveFailsWithDialogCancelled) {
    onDialog([](QFileDialog& shown) { shown.reject(); });
    EXPECT_EQ(numberOf(dialog.save(request)), ErrorNumber::dialogCancelled);
}

// Tests the request that the playlist editor makes for a rename: initialFolder is the path of the
// old file, and fileName has neither folder nor extension.
TEST_F(QtFileDialogTest, ShowsAPlainNameInTheFolderOfAFileThatIsGivenAsInitialFolder) {
    FileDialogRequest renaming;
    renaming.defaultExtension = "mp3";
    renaming.initialFolder = "L:" + machine("one.wav");
    renaming.fileName = "one";
    onDialog([&](QFileDialog& shown) {
        EXPECT_EQ(shown.directory().absolutePath().toStdString(), folder.path().string());
        auto* line = shown.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        ASSERT_NE(line, nullptr);
        EXPECT_EQ(line->text(), "one");
        QTest::keyClick(line, Qt::Key_Return);
    });
    EXPECT_EQ(dialog.save(renaming).valueOr("failed"), "L:" + machine("one.mp3"));
}

} // namespace
} // namespace sonarith
