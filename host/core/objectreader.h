// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QSet>
#include <QString>

#include <vector>

/// Reads the members of a JSON object strictly: a member that is missing, has another type or is
/// unknown is a problem. The first problem of all readers that share one is kept.
class ObjectReader
{
    Q_DECLARE_TR_FUNCTIONS(ObjectReader)

public:
    /// @param placePath where @p source stands in the document, for the problem; empty at the top
    ObjectReader(const QJsonObject &source, const QString &placePath, QString *sharedProblem);

    bool has(const QString &name) const;
    QString text(const QString &name);
    /// A whole number from 0 to 2^53; 0 on a problem.
    qint64 number(const QString &name);
    QByteArray sha256(const QString &name);
    ObjectReader child(const QString &name);
    std::vector<ObjectReader> children(const QString &name);

    /// Call it when all members have been read: any other one is a problem.
    void refuseUnknown();
    void fail(const QString &text);

private:
    QJsonValue take(const QString &name, QJsonValue::Type type, const QString &typeText);

    QJsonObject object;
    QString path;
    QString *problem;
    QSet<QString> known;
};
