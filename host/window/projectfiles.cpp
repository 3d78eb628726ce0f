// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/projectfiles.h"

#include "host/core/paths.h"
#include "host/window/inputkind.h"
#include "host/window/questions.h"
#include "host/window/session.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QSettings>

#include <KRecentFilesMenu>
#include <algorithm>
#include <utility>

namespace {

QString lastProjectKey()
{
    return QStringLiteral("lastProject");
}

} // namespace

ProjectFiles::ProjectFiles(Session *imageSession, KRecentFilesMenu *recentFiles, QWidget *parent)
    : QObject(parent)
    , session(imageSession)
    , recent(recentFiles)
    , window(parent)
{
    connect(session, &Session::projectChanged, this, [this] {
        const QString file = session->projectFile();
        if (!file.isEmpty()) {
            recent->addUrl(QUrl::fromLocalFile(file));
        }
        // A session in which no project could be opened does not forget the last one.
        if (std::exchange(openFile, file) != file) {
            QSettings().setValue(lastProjectKey(), file);
        }
    });
}

void ProjectFiles::open(const QStringList &paths)
{
    const bool hasProject = std::any_of(paths.begin(), paths.end(), [](const QString &path) {
        return inputKindOf(path) == InputKind::Project;
    });
    if (!session->isLoaded() || session->isBuilding() || (hasProject && !mayLeave())) {
        return;
    }
    for (const QString &path : paths) {
        recent->addUrl(QUrl::fromLocalFile(absolutePath(path)));
    }
    session->open(paths);
}

QString ProjectFiles::startFolder() const
{
    return QFileInfo(session->projectFile()).absolutePath();
}

void ProjectFiles::chooseFolder()
{
    const QString folder
        = QFileDialog::getExistingDirectory(window, tr("Open a folder of files"), startFolder());
    if (!folder.isEmpty()) {
        open({folder});
    }
}

void ProjectFiles::chooseFiles()
{
    const QStringList files = QFileDialog::getOpenFileNames(window, tr("Add files"), startFolder());
    if (!files.isEmpty()) {
        open(files);
    }
}

void ProjectFiles::chooseProject()
{
    const QString file = QFileDialog::getOpenFileName(
        window, tr("Open a project or configuration"), startFolder(),
        tr("Projects, manifests and configurations (*.loomwright *.json *.txt);;All files (*)"));
    if (!file.isEmpty()) {
        open({file});
    }
}

bool ProjectFiles::save()
{
    if (session->projectFile().isEmpty()) {
        return saveAs();
    }
    return mayReplaceProject() && session->saveProject(session->projectFile());
}

/// Asks before a change of another program is lost.
bool ProjectFiles::mayReplaceProject()
{
    if (!session->isProjectFileChanged() || !QFileInfo::exists(session->projectFile())) {
        return true;
    }
    return confirm(window, tr("Save the project"),
                   tr("Another program has changed %1. Its changes will be lost.")
                       .arg(QDir::toNativeSeparators(session->projectFile())),
                   tr("&Replace"), tr("Cancel"));
}

bool ProjectFiles::saveAs()
{
    const QString proposed = session->projectFile().isEmpty()
        ? QDir(startFolder()).filePath(QStringLiteral("image.loomwright"))
        : session->projectFile();
    QFileDialog dialog(window, tr("Save the project"), proposed,
                       tr("Projects (*.loomwright);;All files (*)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("loomwright"));
    dialog.selectFile(proposed);
    return dialog.exec() == QDialog::Accepted
        && session->saveProject(dialog.selectedFiles().value(0));
}

void ProjectFiles::saveConfigurationAs()
{
    const QString file
        = QFileDialog::getSaveFileName(window, tr("Save the configuration"),
                                       QDir(startFolder()).filePath(QStringLiteral("config.txt")),
                                       tr("Configurations (*.txt);;All files (*)"));
    if (!file.isEmpty() && session->saveConfiguration(file)) {
        recent->addUrl(QUrl::fromLocalFile(file));
    }
}

void ProjectFiles::restoreLast()
{
    const QString file = QSettings().value(lastProjectKey()).toString();
    if (!file.isEmpty()) {
        session->openProject(file);
    }
}

/// Without a project file it does not ask, since dropping a folder and building it needs none.
bool ProjectFiles::mayLeave()
{
    if (session->projectFile().isEmpty() || !session->isModified()) {
        return true;
    }
    QMessageBox question(
        QMessageBox::Question, tr("Unsaved changes"),
        tr("Save the changes to %1?").arg(QDir::toNativeSeparators(session->projectFile())),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, window);
    question.setTextFormat(Qt::PlainText);
    question.setDefaultButton(QMessageBox::Save);
    const int answer = question.exec();
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && save());
}
