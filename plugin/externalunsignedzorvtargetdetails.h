// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class Ui_ExternalUnsignedZorvTargetDetails;

/// The widget for the host's target-details page: a text that this target needs no details.
class ExternalUnsignedZorvTargetDetails : public QWidget
{
    Q_OBJECT

public:
    /// Creates the widget with its text.
    explicit ExternalUnsignedZorvTargetDetails(QWidget *parent);
    ~ExternalUnsignedZorvTargetDetails() override;

private:
    Ui_ExternalUnsignedZorvTargetDetails *form;
};
