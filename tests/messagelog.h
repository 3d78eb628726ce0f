// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "qtcompat.h"

#include <QObject>
#include <QStringList>

#include <initializer_list>

/// The messages about one header section of a legacy data file.
inline QStringList sectionReport(const QString &title, int nodes,
                                 const QStringList &errors = QStringList())
{
    return listOf("S \nVerify header \"" + title + '"', "S Checking the following rules: ",
                  "S  - Each offset equals the sum of all previous node sizes",
                  "S  - Each stated size matches the actual data size")
        << errors
        << QString("S Analyzed %1 nodes and found %2 errors").arg(nodes).arg(errors.count());
}

/// Records what an object of the plug-in reports, in order: status messages as "S text", error
/// messages as "E text", the event of a loaded data file as "D".
class MessageLog : public QObject
{
    Q_OBJECT

public:
    explicit MessageLog(QObject *source)
    {
        connect(source, SIGNAL(statusMessage(QString)), SLOT(addStatus(QString)));
        connect(source, SIGNAL(errorMessage(QString)), SLOT(addError(QString)));
        for (const char *event : {"dataFileLoaded()", "dataFileChanged()"}) {
            if (source->metaObject()->indexOfSignal(event) >= 0) {
                connect(source, QByteArray("2").append(event), SLOT(addEvent()));
            }
        }
    }

    /// What was recorded since the last call, without the first @p skipped messages.
    QStringList take(int skipped = 0)
    {
        const QStringList taken = lines.mid(skipped);
        lines.clear();
        return taken;
    }

public slots:
    void addStatus(const QString &text)
    {
        lines.append("S " + text);
    }
    void addError(const QString &text)
    {
        lines.append("E " + text);
    }
    void addEvent()
    {
        lines.append("D");
    }

private:
    QStringList lines;
};
