// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/controls/list_box.h"

#include <utility>

namespace sonarith {

namespace {

std::string uptoNull(const std::string& text) {
    return text.substr(0, text.find('\0'));
}

Status outOfRange() {
    return {ErrorNumber::subscriptOutOfRange, "The list has no line with this number."};
}

} // namespace

std::string ListBox::list(int index) const {
    return holds(index) ? lines_[static_cast<std::size_t>(index)].text : std::string();
}

Status ListBox::setList(int index, const std::string& text) {
    if (!holds(index)) {
        return outOfRange();
    }
    std::string& line = lines_[static_cast<std::size_t>(index)].text;
    if (std::string kept = uptoNull(text); kept != line) {
        line = std::move(kept);
        listChanged.emit({ListChange::Kind::edited, index});
    }
    return {};
}

void ListBox::addItem(const std::string& text) {
    lines_.push_back({.text = uptoNull(text)});
    listChanged.emit({ListChange::Kind::inserted, listCount() - 1});
}

Status ListBox::addItem(const std::string& text, int index) {
    if (index < 0 || index > listCount()) {
        return {ErrorNumber::invalidProcedureCall, "The list has no place with this number."};
    }
    lines_.insert(lines_.begin() + index, Line{.text = uptoNull(text)});
    if (listIndex_ >= index) {
        ++listIndex_;
    }
    listChanged.emit({ListChange::Kind::inserted, index});
    return {};
}

Status ListBox::removeItem(int index) {
    if (!holds(index)) {
        return outOfRange();
    }
    lines_.erase(lines_.begin() + index);
    if (listIndex_ == index) {
        listIndex_ = -1;
    } else if (listIndex_ > index) {
        --listIndex_;
    }
    listChanged.emit({ListChange::Kind::removed, index});
    return {};
}

void ListBox::clear() {
    lines_.clear();
    listIndex_ = -1;
    listChanged.emit({ListChange::Kind::cleared});
}

Status ListBox::setListIndex(int index) {
    if (index < -1 || index >= listCount()) {
        return {ErrorNumber::invalidPropertyValue, "The list has no line with this number."};
    }
    if (index != listIndex_) {
        assign(listIndex_, index, Property::listIndex);
        run(onClick);
    }
    return {};
}

void ListBox::choose(int index) {
    if (index == listIndex_ && holds(index)) {
        run(onClick);
    } else if (holds(index)) {
        setListIndex(index).passOver();
    }
}

void ListBox::atLoad() {
    clear();
    Control::atLoad();
}

bool ListBox::selected(int index) const {
    return holds(index) && lines_[static_cast<std::size_t>(index)].selected;
}

Status ListBox::setSelected(int index, bool selected) {
    if (!holds(index)) {
        return outOfRange();
    }
    bool& mark = lines_[static_cast<std::size_t>(index)].selected;
    if (mark != selected) {
        mark = selected;
        listChanged.emit({ListChange::Kind::edited, index});
    }
    return {};
}

std::int32_t ListBox::itemData(int index) const {
    return holds(index) ? lines_[static_cast<std::size_t>(index)].data : 0;
}

Status ListBox::setItemData(int index, std::int32_t data) {
    if (!holds(index)) {
        return outOfRange();
    }
    lines_[static_cast<std::size_t>(index)].data = data;
    return {};
}

void putOnTop(ListBox& list, const std::string& text, ListBox& scratch) {
    scratch.clear();
    scratch.addItem(text);
    for (int i = 0; i < list.listCount(); ++i) {
        scratch.addItem(list.list(i));
    }
    list.clear();
    for (int i = 0; i < scratch.listCount(); ++i) {
        list.addItem(scratch.list(i));
    }
}

void reverse(ListBox& list, ListBox& scratch) {
    scratch.clear();
    for (int i = list.listCount() - 1; i >= 0; --i) {
        scratch.addItem(list.list(i));
    }
    list.clear();
    for (int i = 0; i < scratch.listCount(); ++i) {
        list.addItem(scratch.list(i));
    }
}

} // namespace sonarith
