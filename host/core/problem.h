// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Where a problem comes from.
enum class ProblemKind {
    Input,     ///< An input was refused, by the plug-in or by the host.
    Message,   ///< The plug-in reported an error while an input was applied.
    Check,     ///< A check of the plug-in failed.
    Finding,   ///< The host itself found something wrong with a value.
    Difference ///< A file or value differs from a manifest.
};

/// Something that is wrong with an image or its inputs, and blocks a build.
struct Problem {
    /// Where it comes from.
    ProblemKind kind = ProblemKind::Input;
    QString text;             ///< What is wrong.
    QString ingredient;       ///< Display name of the ingredient; empty when it concerns none.
    QString key;              ///< The ingredient's key.
    QString file;             ///< Path of the file that it is about; may be empty.
    QString required;         ///< What should be there, if that can be said.
    QString actual;           ///< What is there instead.
    qint64 requiredSize = -1; ///< In bytes, if required is a size; else -1.
    qint64 actualSize = -1;   ///< In bytes, if actual is a size; else -1.
    /// Whether a build without checks is blocked as well.
    bool mustBeFixed = false;
};
