// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Reading values in cells without a copy.

#include <QVariant>

/// The value of type @p Payload inside @p value, null when it holds another type. It points into
/// @p value, which must outlive it: this avoids a copy, the main cost of reading a cell.
template <typename Payload> const Payload *payloadIn(const QVariant &value)
{
    return value.userType() == qMetaTypeId<Payload>()
        ? static_cast<const Payload *>(value.constData())
        : nullptr;
}
