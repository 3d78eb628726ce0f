// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>
#include <QStringList>

/// A menu of the projects, configurations, folders and files that were opened last, kept in the
/// user's settings. An icon shows the kind of each.
class RecentFiles : public QMenu
{
    Q_OBJECT

public:
    explicit RecentFiles(QWidget *parent = nullptr);

    /// Puts @p file at the top.
    void add(const QString &file);
    /// Removes @p file, for example because it no longer exists.
    void remove(const QString &file);

signals:
    void chosen(const QString &file);

private:
    void setFiles(const QStringList &newFiles);
    void fill();

    QStringList files;
};
