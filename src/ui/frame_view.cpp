// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/frame_view.h"

#include "platform/qt/text.h"
#include "ui/mnemonics.h"

namespace sonarith {

FrameView::FrameView(Frame& frame, QWidget* parent)
    : QGroupBox(parent),
      view_(
          frame, *this, [&frame] { return frame.caption(); }, QString(),
          [this, &frame](Property which) {
              if (concerns(which, Property::caption)) {
                  setTitle(withoutMnemonic(toQString(frame.caption())));
              }
          }) {}

} // namespace sonarith
