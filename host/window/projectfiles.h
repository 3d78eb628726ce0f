// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class ImageSession;
class QWidget;
class RecentFiles;

/// Opens and saves projects, folders, files and configurations, with the dialogs and questions that
/// belong to it.
class ProjectFiles : public QObject
{
    Q_OBJECT

public:
    /// @p imageSession and @p recentFiles must outlive this object; dialogs belong to @p parent.
    ProjectFiles(ImageSession *imageSession, RecentFiles *recentFiles, QWidget *parent);

    /// Opens what the user names: folders, files, configurations, a project.
    void open(const QStringList &paths);
    void chooseFolder();
    void chooseFiles();
    void chooseProject();
    void chooseConfiguration();
    /// Saves to the project file, or asks for one; false when nothing was saved.
    bool save();
    bool saveAs();
    void saveConfigurationAs();
    /// Opens the project file that was in use when the program ended the last time.
    void restoreLast();
    /// Asks about a project file that is not saved; false when the user wants to go on with it.
    bool mayLeave();

private:
    QString startFolder() const;

    ImageSession *session;
    RecentFiles *recent;
    QWidget *window;
    /// As of the start: the setting follows what is opened.
    QString lastProject;
};
