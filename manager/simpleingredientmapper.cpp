// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "manager/simpleingredientmapper.h"

#include "xml/xmlparser.h"

#include <QDirIterator>
#include <QDomDocument>
#include <QFileInfo>

SimpleIngredientMapper::SimpleIngredientMapper(const QString &mapXml, QObject *parent)
    : QObject(parent)
{
    QDomDocument document;
    if (parseXml(&document, mapXml)) {
        setupIngredientMap(&document);
    }
}

void SimpleIngredientMapper::setupIngredientMap(QDomDocument *document)
{
    ingredientMap.clear();
    const QDomNodeList rules = document->elementsByTagName(QLatin1String("mapIngredient"));
    for (int i = 0; i < rules.count(); ++i) {
        const QDomElement rule = rules.at(i).toElement();
        if (rule.hasAttribute(QLatin1String("keyName"))
            && rule.hasAttribute(QLatin1String("fileNameRegex"))) {
            ingredientMap.insert(
                rule.attribute(QLatin1String("keyName")),
                QRegExp(rule.attribute(QLatin1String("fileNameRegex")), Qt::CaseInsensitive));
        }
    }
}

QHash<QString, QString> SimpleIngredientMapper::mapIngredient(const QString &filePath)
{
    const QFileInfo file(filePath);
    QHash<QString, QString> found;
    addMatches(file.fileName(), file.filePath(), &found);
    return found;
}

QHash<QString, QString> SimpleIngredientMapper::findAllIngredients(const QString &directory)
{
    QHash<QString, QString> found;
    QDirIterator files(directory, QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString filePath = files.next();
        addMatches(files.fileName(), filePath, &found);
    }
    return found;
}

void SimpleIngredientMapper::addMatches(const QString &fileName, const QString &filePath,
                                        QHash<QString, QString> *found)
{
    for (QMap<QString, QRegExp>::const_iterator rule = ingredientMap.constBegin();
         rule != ingredientMap.constEnd(); ++rule) {
        if (!rule.value().exactMatch(fileName)) {
            continue;
        }
        const QString entry = rule.key() + QLatin1String(" = ") + filePath;
        if (found->contains(rule.key())) {
            emit errorMessage(QLatin1String(" - Duplicate Ingredient found! ") + entry);
        } else {
            found->insert(rule.key(), filePath);
            emit statusMessage(QLatin1String(" - Ingredient found: ") + entry);
        }
    }
}
