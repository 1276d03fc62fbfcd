// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/application.h"

#include "app/bars.h"
#include "app/resize_layout.h"

namespace sonarith {

Application::Application(const Platform& platform)
    : platform_(platform),
      form1_(platform.loop, process_, windows_),
      finder_(windows_.frmsearch, platform.files, platform.directories),
      searchEngine_(finder_, platform.directories, platform.loop),
      finderScanner_(finder_),
      fileAdder_(form1_, process_, platform.files, platform.loop),
      workTree_(form1_, process_, finderScanner_, fileAdder_),
      finderWindow_(finder_, searchEngine_,
                    {platform.loop, platform.files, platform.boxes, platform.shell},
                    {fileAdder_, workTree_}),
      treeMoves_(form1_, process_, platform.loop, drag_),
      treeSelection_(form1_, process_, platform.loop, drag_, treeMoves_),
      treeDrag_(form1_, drag_, treeMoves_),
      labelEdit_(form1_, process_, platform.files, drag_),
      popupMenu_(form1_, process_, platform.files, platform.loop, drag_),
      openFile_(platform.fileDialog, fileAdder_),
      actionStarter_(form1_, process_, windows_),
      extraction_{platform.loop, platform.media, process_, form1_, captureState_},
      inspection_(extraction_, platform.boxes, platform.random),
      monitor_(extraction_, windows_, fileAdder_,
               [this](std::int32_t track) { capture_.StartTrackRecording2(track); }),
      // Until the preferences are built there is no list to select a format from.
      capture_(extraction_, platform.boxes, platform.random, monitor_, nullptr),
      preview_(extraction_),
      worker_({platform.loop, platform.files, platform.mp3, platform.pointer, process_, form1_,
               windows_.Form6}),
      decoding_(
          {platform.loop, platform.files, platform.boxes, process_, form1_, windows_, fileAdder_}),
      clip_(platform, form1_),
      mainWindow_(platform, process_, windows_, form1_, inspection_, workTree_) {
    // As designed, until whoever shows the window tells what became of it.
    form1_.setWidth(designWidth);
    form1_.setHeight(designHeight);
    form1_.setInnerSize(designWidth, designHeight);
    wireWindow();
    wireToolBar();
    wireMenus();
    wireTree();
    wireJobs();
}

void Application::start() {
    platform_.files.changeFolder(platform_.files.programFolder()).passOver();
    form1_.load();
}

void Application::wireWindow() {
    form1_.onLoad = [this] {
        mainWindow_.Form_Load();
    };
    form1_.onQueryUnload = [this] {
        mainWindow_.Form_QueryUnload();
    };
    form1_.onUnload = [this] {
        mainWindow_.Form_Unload();
    };
    form1_.onUnloadAgain = [this] {
        mainWindow_.Form_QueryUnload();
    };
    form1_.onResize = [this] {
        runResizeLayout(form1_);
    };
    form1_.onMouseDown = [this] {
        mainWindow_.N1Drag();
    };
    form1_.Image3.onMouseDown = [this] {
        form1_.captionGrasped.emit();
    };
    form1_.Timer1.onTimer = [this] {
        mainWindow_.Timer1_Timer();
    };
    form1_.Timeravi.onTimer = [this] {
        clip_.Timeravi_Timer();
    };
}

void Application::wireToolBar() {
    form1_.Command5.onClick = [this] {
        mainWindow_.Command5_Click();
    };
    form1_.Cmdhelp.onClick = [this] {
        mainWindow_.Cmdhelp_Click();
    };
    form1_.C5555555.onClick = [this] {
        windows_.frmPlayList.show();
    };
    form1_.Copt.onClick = [this] {
        windows_.FrmPrefs.show();
    };
    form1_.C777.onClick = [this] {
        windows_.frmsearch.show();
    };
}

void Application::wireMenus() {
    // mnuDevices belongs to the machine that the program runs on.
    form1_.mnuOpenfile.onClick = [this] {
        openFile_.mnuOpenfile_Click();
    };
    form1_.mnuExit.onClick = [this] {
        form1_.Command5.click();
    };
    form1_.mnuStart2.onClick = [this] {
        form1_.mnuStart.click();
    };
    form1_.mnupopup.onOpen = [this] {
        popupMenu_.mnupopup_Open();
    };
    form1_.mnuFileRemove.onClick = [this] {
        popupMenu_.mnuFileRemove_Click();
    };
    form1_.mnuRemoveDelete.onClick = [this] {
        popupMenu_.mnuRemoveDelete_Click();
    };
    form1_.mnuMinimize.onClick = [this] {
        mainWindow_.mnuMinimize_Click();
    };
    form1_.mnuExit2.onClick = [this] {
        form1_.Command5.click();
    };

    form1_.mnuStart.onClick = [this] {
        mainWindow_.mnuStart_Click();
    };
    form1_.mnuStop.onClick = [this] {
        form1_.Command8.click();
    };
    form1_.mnuRefreshlist.onClick = [this] {
        mainWindow_.C1212_Click();
    };

    form1_.mnuGetMainPrefs.onClick = [this] {
        windows_.FrmPrefs.show();
    };
    form1_.mnuToolbar.onClick = [this] {
        mnuToolbar_Click(form1_);
    };
    form1_.mnuCDbar.onClick = [this] {
        mnuCDbar_Click(form1_);
    };
    form1_.mnuActivityBar.onClick = [this] {
        mnuActivityBar_Click(form1_);
    };
    form1_.mnuStatusbar.onClick = [this] {
        mnuStatusbar_Click(form1_);
    };
    form1_.MnuOpenCD.onClick = [this] {
        windows_.Form4.show();
    };
    form1_.mnuCloseCD.onClick = [this] {
        windows_.Form4.unload();
    };
    form1_.mnuSearch.onClick = [this] {
        windows_.frmsearch.show();
    };
    form1_.mnuPlaylist.onClick = [this] {
        windows_.frmPlayList.show();
    };

    form1_.mnuHelpfile.onClick = [this] {
        form1_.Cmdhelp.click();
    };
    form1_.mnuAbout.onClick = [this] {
        platform_.shell.showAboutBox();
    };
}

void Application::wireTree() {
    TreeView& tree = form1_.TreeView1;
    tree.onMouseDown = [this](MouseButtons buttons, const NodeRef& at) {
        treeSelection_.TreeView1_MouseDown(buttons, at);
    };
    tree.onMouseUp = [this](MouseButtons, const NodeRef&) {
        treeSelection_.TreeView1_MouseUp();
    };
    tree.onDoubleClick = [this] {
        treeSelection_.TreeView1_DblClick();
    };
    tree.onMouseMove = [this](MouseButtons down, const NodeRef&) {
        treeDrag_.TreeView1_MouseMove(down);
    };
    tree.onDragOver = [this](const NodeRef& target) {
        treeDrag_.TreeView1_DragOver(target);
    };
    tree.onDragDrop = [this](const NodeRef&) {
        treeDrag_.TreeView1_DragDrop();
    };
    tree.onBeforeLabelEdit = [this](bool& cancel) {
        labelEdit_.TreeView1_BeforeLabelEdit(cancel);
    };
    tree.onAfterLabelEdit = [this](bool& cancel, const std::string& text) {
        labelEdit_.TreeView1_AfterLabelEdit(cancel, text);
    };
}

void Application::wireJobs() {
    form1_.CmdSelectAction.onClick = [this] {
        actionStarter_.CmdSelectAction_Click();
    };
    form1_.cmdStart.onClick = [this] {
        capture_.cmdStart_Click();
    };
    form1_.tmrRecord.onTimer = [this] {
        monitor_.tmrRecord_Timer();
    };
    form1_.Command8.onClick = [this] {
        monitor_.Command8_Click();
    };
    form1_.Command2.onClick = [this] {
        monitor_.Command2_Click();
    };
    form1_.Command11.onClick = [this] {
        preview_.Command11_Click();
    };
    form1_.Command12.onClick = [this] {
        preview_.Command12_Click();
    };
    form1_.CmdDecoder.onClick = [this] {
        decoding_.CmdDecoder_Click();
    };
    windows_.Form6.onLoad = [this] {
        worker_.load();
    };
    windows_.Form6.onUnload = [this] {
        worker_.unload();
    };
    // tmrWarning is for the disk guard, which is to come.
}

} // namespace sonarith
