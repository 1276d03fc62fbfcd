// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/bars.h"

#include "app/resize_layout.h"

namespace sonarith {

namespace {

void setBar(Form1& form, MenuItem& entry, PictureBox& bar, bool visible) {
    entry.setChecked(visible);
    bar.setVisible(visible);
    runResizeLayout(form);
}

void toggleBar(Form1& form, MenuItem& entry, PictureBox& bar) {
    setBar(form, entry, bar, !entry.checked());
}

} // namespace

void mnuToolbar_Click(Form1& form) {
    toggleBar(form, form.mnuToolbar, form.Picture3);
}
void mnuCDbar_Click(Form1& form) {
    toggleBar(form, form.mnuCDbar, form.Picture4);
}
void mnuActivityBar_Click(Form1& form) {
    toggleBar(form, form.mnuActivityBar, form.Picture2);
}
void mnuStatusbar_Click(Form1& form) {
    toggleBar(form, form.mnuStatusbar, form.Picture1);
}

void forceToolBarOn(Form1& form) {
    setBar(form, form.mnuToolbar, form.Picture3, true);
}

} // namespace sonarith
