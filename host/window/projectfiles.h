// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class Session;
class KRecentFilesMenu;
class QWidget;

/// Opens and saves projects, folders, files and configurations, with the necessary dialogs.
class ProjectFiles : public QObject
{
    Q_OBJECT

public:
    /// @p imageSession and @p recentFiles must outlive this object; dialogs belong to @p parent.
    ProjectFiles(Session *imageSession, KRecentFilesMenu *recentFiles, QWidget *parent);

    /// Opens folders, files, configurations or a project.
    void open(const QStringList &paths);
    void chooseFolder();
    void chooseFiles();
    void chooseProject();
    /// Saves to the project file, or asks for one; false when nothing was saved.
    bool save();
    bool saveAs();
    void saveConfigurationAs();
    /// Opens the project file that was open last, in this session or an earlier one.
    void restoreLast();
    /// Asks about unsaved changes of a project file; false when the user cancels.
    bool mayLeave();

private:
    bool mayReplaceProject();
    QString startFolder() const;

    Session *session;
    KRecentFilesMenu *recent;
    QWidget *window;
    QString openFile; ///< The project file of this session.
};
