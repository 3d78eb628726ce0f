// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class Ui_ExternalUnsignedZorvTargetDetails;

/// The host's target-details page: this target needs no details, and the page says so.
class ExternalUnsignedZorvTargetDetails : public QWidget
{
    Q_OBJECT

public:
    /// Creates the page with its text.
    explicit ExternalUnsignedZorvTargetDetails(QWidget *parent);
    ~ExternalUnsignedZorvTargetDetails() override;

private:
    Ui_ExternalUnsignedZorvTargetDetails *form;
};
