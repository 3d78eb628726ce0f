// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QSet>
#include <QString>

#include <vector>

/// Reads the members of a JSON object strictly: a missing or unknown member, or one of another
/// type, is a problem. Of all readers that share a problem, the first to report one wins.
class ObjectReader
{
public:
    /// Reads @p source.
    ///
    /// @param source the object
    /// @param placePath the position of @p source in the document, for the problem; empty at the
    /// top
    /// @param sharedProblem receives the first problem; must outlive all readers that share it
    ObjectReader(const QJsonObject &source, const QString &placePath, QString *sharedProblem);

    /// Whether there is a member of that name.
    bool has(const QString &name) const;
    /// A string; empty on a problem.
    QString text(const QString &name);
    /// A whole number from 0 to 2^53; 0 on a problem.
    qint64 number(const QString &name);
    /// A SHA-256 in hexadecimal; empty on a problem.
    QByteArray sha256(const QString &name);
    /// A reader for an object; of an empty one on a problem.
    ObjectReader child(const QString &name);
    /// A reader for each object of an array; none on a problem.
    std::vector<ObjectReader> children(const QString &name);

    /// Call it when all members have been read: any other member is a problem.
    void refuseUnknown();
    /// Reports a problem found by the caller, with the position of this object.
    void fail(const QString &text);

private:
    QJsonValue take(const QString &name, QJsonValue::Type type, const QString &typeText);

    QJsonObject object;
    QString path;
    QString *problem;
    QSet<QString> known;
};
