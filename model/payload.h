// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// Access to the values in cells without a copy.

#include <QVariant>

/// The value of type @p Payload in @p value; null when @p value has another type. The pointer is
/// valid as long as @p value is neither changed nor destroyed. Copying the value was the main cost
/// of reading a cell.
template <typename Payload> const Payload *payloadIn(const QVariant &value)
{
    return value.userType() == qMetaTypeId<Payload>()
        ? static_cast<const Payload *>(value.constData())
        : nullptr;
}
