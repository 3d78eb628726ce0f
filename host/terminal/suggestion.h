// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// The entry of @p candidates that @p word was probably meant to be; empty when none is close.
QString closestTo(const QString &word, const QStringList &candidates);
