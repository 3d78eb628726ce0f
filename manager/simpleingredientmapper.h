// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QMap>
#include <QObject>
#include <QRegExp>

class QDomDocument;

/// Maps files to ingredients by file name.
///
/// Its rules come from a map document: each `mapIngredient` element has an ingredient key
/// (`keyName`) and a pattern (`fileNameRegex`) that must match a file's whole name, ignoring case.
class SimpleIngredientMapper : public QObject
{
    Q_OBJECT

public:
    /// Reads the rules from @p mapXml, the XML text itself. If it cannot be parsed, there are no
    /// rules; nothing is reported.
    explicit SimpleIngredientMapper(const QString &mapXml, QObject *parent = nullptr);

    /// Replaces the rules with those of @p document; of several rules for one key the last wins.
    void setupIngredientMap(QDomDocument *document);
    /// The ingredient keys whose patterns match the name of @p filePath, each with that path; each
    /// is reported through statusMessage(). The file need not exist.
    QHash<QString, QString> mapIngredient(const QString &filePath);
    /// The first matching file below @p directory for each ingredient key, reported through
    /// statusMessage(). Files are visited in the order of the file system, without symlinks.
    /// Further matches for a key are reported through errorMessage() and ignored.
    QHash<QString, QString> findAllIngredients(const QString &directory);

signals:
    /// A file that was mapped to an ingredient.
    void statusMessage(QString message);
    /// A further file for an ingredient that already has one.
    void errorMessage(QString message);

private:
    void addMatches(const QString &fileName, const QString &filePath,
                    QHash<QString, QString> *found);

    QMap<QString, QRegExp> ingredientMap;
};
