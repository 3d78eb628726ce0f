// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#pragma once

#include "manager/filenamepattern.h"

#include <QHash>
#include <QMap>
#include <QObject>

class QDomDocument;

/// Tells by file name which ingredient a file belongs to.
///
/// Its rules come from a map document: each `mapIngredient` element gives an ingredient key
/// (`keyName`) and a pattern (`fileNameRegex`) that a file's whole name must match, in any case of
/// letters. Both questions are answered with a hash from ingredient key to file path.
class SimpleIngredientMapper : public QObject
{
    Q_OBJECT

public:
    /// Reads the rules from @p mapXml, the XML text itself. A text that cannot be parsed gives no
    /// rules; nothing is reported.
    explicit SimpleIngredientMapper(const QString &mapXml, QObject *parent = nullptr);

    /// Replaces the rules by those of @p document; of several rules for a key the last one counts.
    void setupIngredientMap(QDomDocument *document);
    /// The keys that the name of @p filePath fits, each with that path. The file need not exist.
    QHash<QString, QString> mapIngredient(const QString &filePath);
    /// For each key the first file below @p directory that fits. The walk leaves symbolic links out
    /// and takes files in the order of the file system; each further file for a key is reported
    /// through errorMessage() and left alone.
    QHash<QString, QString> findAllIngredients(const QString &directory);

signals:
    /// Text for the user; sent by no operation so far.
    void statusMessage(QString message);
    /// A second file for an ingredient.
    void errorMessage(QString message);

private:
    void addMatches(const QString &fileName, const QString &filePath,
                    QHash<QString, QString> *found);

    QMap<QString, FileNamePattern> ingredientMap;
};
