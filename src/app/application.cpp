// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/application.h"

namespace sonarith {

Application::Application(const Platform& platform)
    : platform_(platform),
      windows_(platform_, process_),
      scanner_(windows_.frmsearch),
      workTree_(platform_, process_, windows_, scanner_),
      finder_(platform_, windows_, workTree_.adder, workTree_.tree),
      extraction_(platform_, process_, windows_, workTree_.adder),
      conversion_(platform_, process_, windows_, workTree_.adder),
      player_(platform_, process_, windows_),
      preferences_(platform_, process_, windows_, extraction_.monitor),
      playlist_(platform_, windows_, workTree_.adder),
      clip_(platform_, windows_.Form1),
      controlPanel_(platform_, windows_),
      mainWindow_(platform_, process_, windows_, extraction_.inspection, workTree_.tree) {}

void Application::start() {
    platform_.files.changeFolder(platform_.files.programFolder()).passOver();
    windows_.Form1.load();
}

void Application::readChosenDisc() {
    player_.power.releaseDisc();
    windows_.Form1.mnuRefreshlist.click();
    player_.power.openDiscAgain();
}

} // namespace sonarith
