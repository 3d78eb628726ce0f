// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "host/core/objectreader.h"

#include <QJsonArray>

#include <algorithm>

namespace {

const int sha256Length = 64;
/// JSON numbers are exact up to here.
const double maxExactNumber = 9007199254740992.0;

bool isHexDigit(QChar character)
{
    return (character >= QLatin1Char('0') && character <= QLatin1Char('9'))
        || (character >= QLatin1Char('a') && character <= QLatin1Char('f'));
}

} // namespace

ObjectReader::ObjectReader(const QJsonObject &source, const QString &placePath,
                           QString *sharedProblem)
    : object(source)
    , path(placePath)
    , problem(sharedProblem)
{
}

void ObjectReader::fail(const QString &text)
{
    if (problem->isEmpty()) {
        *problem = path.isEmpty() ? text : path + QLatin1String(": ") + text;
    }
}

bool ObjectReader::has(const QString &name) const
{
    return object.contains(name);
}

QJsonValue ObjectReader::take(const QString &name, QJsonValue::Type type, const QString &typeText)
{
    known.insert(name);
    QJsonValue value = object.value(name);
    if (value.isUndefined()) {
        fail(QStringLiteral("\"%1\" is missing").arg(name));
    } else if (value.type() != type) {
        fail(QStringLiteral("\"%1\" is not %2").arg(name, typeText));
    }
    return value;
}

QString ObjectReader::text(const QString &name)
{
    return take(name, QJsonValue::String, QStringLiteral("a text")).toString();
}

qint64 ObjectReader::number(const QString &name)
{
    const double value = take(name, QJsonValue::Double, QStringLiteral("a number")).toDouble();
    if (!(value >= 0 && value <= maxExactNumber) || value != double(qint64(value))) {
        fail(QStringLiteral("\"%1\" is not a whole number from 0").arg(name));
        return 0;
    }
    return qint64(value);
}

QByteArray ObjectReader::sha256(const QString &name)
{
    const QString digits = text(name);
    if (digits.length() != sha256Length || !std::all_of(digits.begin(), digits.end(), isHexDigit)) {
        fail(QStringLiteral("\"%1\" is not a SHA-256 of 64 hexadecimal digits").arg(name));
    }
    return digits.toLatin1();
}

ObjectReader ObjectReader::child(const QString &name)
{
    const QJsonObject child
        = take(name, QJsonValue::Object, QStringLiteral("an object")).toObject();
    return {child, path.isEmpty() ? name : path + QLatin1Char('.') + name, problem};
}

std::vector<ObjectReader> ObjectReader::children(const QString &name)
{
    std::vector<ObjectReader> readers;
    const QJsonArray array = take(name, QJsonValue::Array, QStringLiteral("a list")).toArray();
    for (int i = 0; i < array.count(); ++i) {
        const QString place = QStringLiteral("%1[%2]").arg(name).arg(i);
        if (!array.at(i).isObject()) {
            fail(QStringLiteral("%1 is not an object").arg(place));
        }
        readers.push_back({array.at(i).toObject(), place, problem});
    }
    return readers;
}

void ObjectReader::refuseUnknown()
{
    const QStringList names = object.keys();
    for (const QString &name : names) {
        if (!known.contains(name)) {
            fail(QStringLiteral("unknown member \"%1\"").arg(name));
        }
    }
}
