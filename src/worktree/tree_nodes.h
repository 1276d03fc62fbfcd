// SPDX-License-Identifier: GPL-3.0-or-later
// Defines the texts of the work tree's groups, adds the three kinds of nodes (collections, groups,
// items) with their pictures, and finds nodes. The callers decide where nodes are added.
#pragma once

#include <string>

#include "platform/controls/tree_view.h"

namespace sonarith {

// Groups are found by these texts, or by index; never by key.
inline constexpr const char* selectedTracksText = "Selected Tracks";
inline constexpr const char* availableTracksText = "Available Tracks";
inline constexpr const char* selectedWavFilesText = "Selected WAV Files";
inline constexpr const char* wavFilesText = "WAV Files";
inline constexpr const char* selectedMp3FilesText = "Selected MP3 Files";
inline constexpr const char* mp3FilesText = "MP3 Files";

/// Adds a collection, which is a root of the tree. Errors: as TreeView::add.
Result<NodeRef> addCollection(TreeView& tree, const std::string& key, const std::string& text);
/// Adds a child of `collection`. Errors: as TreeView::add; objectNotSet without a collection.
Result<NodeRef> addGroup(TreeView& tree, const NodeRef& collection, const std::string& key,
                         const std::string& text);
/// Adds a track or a file to `group`. Errors: as TreeView::add; objectNotSet without a group.
Result<NodeRef> addItem(TreeView& tree, const NodeRef& group, const std::string& key,
                        const std::string& text);

/// Of the nodes whose text equals `text`, the one with the lowest index; empty if there is none.
[[nodiscard]] NodeRef firstNodeOfText(const TreeView& tree, const std::string& text);

/// The text of a node; empty for no node.
[[nodiscard]] std::string textOf(const NodeRef& node);

/// The text of a node's parent; empty for no node, a root or a removed node.
[[nodiscard]] std::string parentText(const NodeRef& node);

/// Whether `text` begins with "Track". A node with such a text counts as a track, wherever the node
/// is in the tree.
[[nodiscard]] bool isTrackText(const std::string& text);

} // namespace sonarith
