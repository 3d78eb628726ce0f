// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QScrollArea>

class ILoomwrightPlugin;

/// Shows the plug-in's target-details page. The plug-in keeps ownership: the pane must get another
/// plug-in or none before it is deleted.
class TargetDetailsPane : public QScrollArea
{
    Q_OBJECT

public:
    explicit TargetDetailsPane(QWidget *parent = nullptr);

    /// Shows the page of @p plugin. Null returns the current page, which is necessary before its
    /// plug-in is released.
    void setPlugin(ILoomwrightPlugin *plugin);
};
