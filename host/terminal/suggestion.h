// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// The entry of @p candidates that the user probably meant by @p word; empty when none is close.
QString closestTo(const QString &word, const QStringList &candidates);
