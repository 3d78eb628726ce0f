// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "qtcompat.h"

#include <QModelIndex>
#include <QStringList>

#include <functional>

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
/// messages as "E text", the event of a loaded data file as "D", and a change of a model's cell as
/// "C name column", with the text at the beginning of its row.
class MessageLog : public QObject
{
    Q_OBJECT

public:
    explicit MessageLog(QObject *source)
    {
        const char *const receivers[][2] = {
            {SIGNAL(statusMessage(QString)), SLOT(addStatus(QString))},
            {SIGNAL(errorMessage(QString)), SLOT(addError(QString))},
            {SIGNAL(dataFileLoaded()), SLOT(addEvent())},
            {SIGNAL(dataFileChanged()), SLOT(addEvent())},
            {SIGNAL(dataChanged(QModelIndex, QModelIndex)),
             SLOT(addChange(QModelIndex, QModelIndex))},
        };
        for (const auto &receiver : receivers) {
            const QByteArray signature = QMetaObject::normalizedSignature(receiver[0] + 1);
            if (source->metaObject()->indexOfSignal(signature) >= 0) {
                connect(source, receiver[0], receiver[1]);
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
    void addChange(const QModelIndex &topLeft, const QModelIndex &bottomRight)
    {
        const QString name = topLeft.sibling(topLeft.row(), 0).data().toString();
        lines.append(topLeft == bottomRight ? QString("C %1 %2").arg(name).arg(topLeft.column())
                                            : QString("C several"));
    }

private:
    QStringList lines;
};

/// Calls a function whenever an object emits a signal; Qt 4 connects signals to slots alone.
class SignalHook : public QObject
{
    Q_OBJECT

public:
    SignalHook(QObject *source, const char *signal, const std::function<void()> &function)
        : action(function)
    {
        connect(source, signal, SLOT(call()));
    }

public slots:
    void call()
    {
        action();
    }

private:
    std::function<void()> action;
};
