// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// The long names of all options, used by the tables and the parser.
namespace OptionName {

constexpr char config[] = "config";
constexpr char directory[] = "directory";
constexpr char dryRun[] = "dry-run";
constexpr char file[] = "file";
constexpr char help[] = "help";
constexpr char image[] = "image";
constexpr char json[] = "json";
constexpr char keepWork[] = "keep-work";
constexpr char locked[] = "locked";
constexpr char manifest[] = "manifest";
constexpr char names[] = "names";
constexpr char noCheck[] = "no-check";
constexpr char output[] = "output";
constexpr char plugin[] = "plugin";
constexpr char project[] = "project";
constexpr char quiet[] = "quiet";
constexpr char set[] = "set";
constexpr char stitcher[] = "stitcher";
constexpr char target[] = "target";
constexpr char timeout[] = "timeout";
constexpr char verbose[] = "verbose";
constexpr char version[] = "version";

} // namespace OptionName
