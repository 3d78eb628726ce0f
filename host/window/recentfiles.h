// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>
#include <QStringList>

/// A menu of the files and folders that were opened last, kept in the user's settings.
class RecentFiles : public QMenu
{
    Q_OBJECT

public:
    explicit RecentFiles(QWidget *parent = nullptr);

    /// Puts @p file at the top.
    void add(const QString &file);

signals:
    void chosen(const QString &file);

private:
    void fill();

    QStringList files;
};
