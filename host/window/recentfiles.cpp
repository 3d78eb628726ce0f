// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/recentfiles.h"

#include "host/core/inputkind.h"
#include "host/window/icons.h"

#include <QDir>
#include <QSettings>
#include <QTextDocument>

namespace {

const int maxFiles = 10;
const int maxLabelCharacters = 60;

QString settingsKey()
{
    return QStringLiteral("recentFiles");
}

QIcon iconOf(InputKind kind)
{
    switch (kind) {
    case InputKind::Directory:
        return namedIcon(QStringLiteral("folder"));
    case InputKind::Project:
        return namedIcon(QStringLiteral("x-office-document"));
    case InputKind::Configuration:
        return namedIcon(QStringLiteral("text-x-generic"));
    case InputKind::File:
        break;
    }
    return {};
}

} // namespace

RecentFiles::RecentFiles(QWidget *parent)
    : QMenu(tr("&Recent"), parent)
    , files(QSettings().value(settingsKey()).toStringList())
{
    setToolTipsVisible(true);
    setEnabled(!files.isEmpty());
    // Delayed, since it reads the files.
    connect(this, &QMenu::aboutToShow, this, &RecentFiles::fill);
}

void RecentFiles::add(const QString &file)
{
    QStringList newFiles = files;
    newFiles.removeAll(file);
    newFiles.prepend(file);
    setFiles(newFiles.mid(0, maxFiles));
}

void RecentFiles::remove(const QString &file)
{
    QStringList newFiles = files;
    newFiles.removeAll(file);
    setFiles(newFiles);
}

void RecentFiles::setFiles(const QStringList &newFiles)
{
    files = newFiles;
    QSettings().setValue(settingsKey(), files);
    setEnabled(!files.isEmpty());
}

void RecentFiles::fill()
{
    clear();
    const int maxWidth = fontMetrics().averageCharWidth() * maxLabelCharacters;
    for (int i = 0; i < files.count(); ++i) {
        const QString file = files.at(i);
        const QString path = QDir::toNativeSeparators(file);
        QString label = fontMetrics().elidedText(path, Qt::ElideMiddle, maxWidth);
        label.replace(QLatin1Char('&'), QLatin1String("&&"));
        QAction *action
            = addAction(iconOf(inputKindOf(file)),
                        QStringLiteral("&%1  %2").arg(QString::number((i + 1) % maxFiles), label));
        action->setToolTip(Qt::convertFromPlainText(path));
        connect(action, &QAction::triggered, this, [this, file] { emit chosen(file); });
    }
    addSeparator();
    addAction(tr("&Clear the list"), this, [this] { setFiles({}); });
}
