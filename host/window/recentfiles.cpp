// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/window/recentfiles.h"

#include <QDir>
#include <QSettings>

namespace {

const int mostFiles = 10;

} // namespace

RecentFiles::RecentFiles(QWidget *parent)
    : QMenu(tr("&Recent"), parent)
    , files(QSettings().value(QStringLiteral("recentFiles")).toStringList())
{
    fill();
}

void RecentFiles::add(const QString &file)
{
    files.removeAll(file);
    files.prepend(file);
    files = files.mid(0, mostFiles);
    QSettings().setValue(QStringLiteral("recentFiles"), files);
    fill();
}

void RecentFiles::fill()
{
    clear();
    setEnabled(!files.isEmpty());
    for (int i = 0; i < files.count(); ++i) {
        const QString file = files.at(i);
        QString label = QDir::toNativeSeparators(file);
        label.replace(QLatin1Char('&'), QLatin1String("&&"));
        QAction *action
            = addAction(QStringLiteral("&%1  %2").arg(QString::number((i + 1) % mostFiles), label));
        connect(action, &QAction::triggered, this, [this, file] { emit chosen(file); });
    }
}
