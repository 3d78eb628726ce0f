// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QScrollArea>

class ILoomwrightPlugin;

/// Whether the user can operate anything in @p page. Where nothing takes the focus but labels and
/// containers, the page only informs.
bool hasInputs(const QWidget &page);

/// The plug-in's target-details page. It stays the plug-in's own: the pane hands it back when it gets
/// another plug-in or is deleted.
class TargetDetailsPane : public QScrollArea
{
    Q_OBJECT

public:
    explicit TargetDetailsPane(QWidget *parent = nullptr);
    ~TargetDetailsPane() override;

    /// Shows the page of @p plugin; null hands back the one that is shown, which has to be done
    /// before its plug-in is released.
    void setPlugin(ILoomwrightPlugin *plugin);
    /// Whether there is a page that is worth its space from the start. One that only informs is
    /// better shown on request.
    bool isPageNeeded() const;

private:
    QPointer<QWidget> page;
};
