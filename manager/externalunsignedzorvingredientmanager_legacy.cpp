// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "manager/externalunsignedzorvingredientmanager.h"

#include "manager/fileaccess.h"
#include "xml/xmlparser.h"

#include <QDomDocument>
#include <QFile>
#include <QRegExp>

namespace {

const int hexadecimal = 16;
/// A signature node counts as this many characters, whatever its data holds.
const int signatureCharacterCount = 8;

} // namespace

bool ExternalUnsignedZorvIngredientManager::validateXmlFile(const QString &fileName)
{
    emit statusMessage(QLatin1String("Validating Legacy XML Data File ") + fileName);

    QFile file(fileName);
    if (!openForReading(&file)) {
        emit errorMessage(QLatin1String("ERROR: Failed to open Legacy XML Data file!"));
        return false;
    }
    QDomDocument document;
    const bool isParsed = parseXml(&document, &file);
    file.close();
    if (!isParsed) {
        emit errorMessage(QLatin1String("ERROR: XML Document content could not be set!"));
        return false;
    }

    const QDomElement root = document.documentElement();
    const bool isVersionSupported = verifyVersion(root);

    emit statusMessage(QLatin1String("Found the following Header Sections:"));
    for (QDomElement child = root.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (child.tagName().startsWith(QLatin1String("header"))) {
            emit statusMessage(QLatin1String(" - ") + child.attribute(QLatin1String("title")));
            headerSections.append(child);
        }
    }

    emit statusMessage(QLatin1String("\nVerifying integrity of header sections"));
    bool isEveryHeaderSound = true;
    // Compat: the sections of earlier files are verified again. A copy of the list, since a slot on
    // the messages may validate another file meanwhile.
    const QList<QDomNode> sections = headerSections;
    for (const QDomNode &section : sections) {
        isEveryHeaderSound = verifyHeader(section) && isEveryHeaderSound;
    }
    return isEveryHeaderSound && isVersionSupported;
}

/// Whether the document states a supported version. Compat: a missing version is not reported.
bool ExternalUnsignedZorvIngredientManager::verifyVersion(const QDomElement &root)
{
    if (!root.hasAttribute(QLatin1String("PLENKITVersion"))) {
        return false;
    }
    const QString version = root.attribute(QLatin1String("PLENKITVersion"));
    // Compat: the dot matches any character.
    if (QRegExp(QLatin1String("^0.1")).indexIn(version) < 0) {
        emit errorMessage(
            QString::fromLatin1(
                "\nLegacy XML PLENKITVersion is %1 but version 0.1.0 or greater is required.")
                .arg(version));
        emit statusMessage(
            QLatin1String("\nPlease use a legacy XML with PLENKITVersion 0.1.0 or greater."));
        return false;
    }
    emit statusMessage(QString::fromLatin1("\nLegacy XML PLENKITVersion is %1").arg(version));
    return true;
}

bool ExternalUnsignedZorvIngredientManager::verifyHeader(QDomNode header)
{
    emit statusMessage(QLatin1String("\nVerify header \"")
                       + header.toElement().attribute(QLatin1String("title")) + QLatin1Char('"'));
    emit statusMessage(QLatin1String("Checking the following rules: "));
    emit statusMessage(QLatin1String(" - Each offset equals the sum of all previous node sizes"));
    emit statusMessage(QLatin1String(" - Each stated size matches the actual data size"));

    int nodeCount = 0;
    int errorCount = 0;
    qint64 runningOffset = 0;
    for (QDomNode node = header.firstChild(); !node.isNull(); node = node.nextSibling()) {
        ++nodeCount;
        const QDomElement element = node.toElement();
        if (element.isNull()) {
            continue;
        }
        bool isOffsetRead = false;
        bool isSizeRead = false;
        const int statedOffset
            = element.attribute(QLatin1String("offset")).toInt(&isOffsetRead, hexadecimal);
        const int statedSize = element.attribute(QLatin1String("byte_cnt")).toInt(&isSizeRead);
        if (!isOffsetRead || !isSizeRead) {
            emit errorMessage(QLatin1String("ERROR: Malformed node!  ") + element.nodeValue());
            ++errorCount;
            break;
        }
        const QString name = element.attribute(QLatin1String("name"));
        const int characterCount = name.startsWith(QLatin1String("Signature"))
            ? signatureCharacterCount
            : element.firstChildElement(QLatin1String("data")).text().length();
        if (runningOffset != statedOffset) {
            emit errorMessage(QString::fromLatin1("ERROR: Offset mismatch! Stated Offset: %1  "
                                                  "Actual offset: %2   Name: %3  ")
                                  .arg(statedOffset, 0, hexadecimal)
                                  .arg(runningOffset, 0, hexadecimal)
                                  .arg(name));
            ++errorCount;
        }
        if (2 * qint64(statedSize) != characterCount) {
            emit errorMessage(
                QString::fromLatin1("ERROR: Size mismatch! Stated Size: %1 Bytes  Actual Size: %2  "
                                    "Stated Offset: %3  Name: %4")
                    .arg(statedSize)
                    .arg(double(characterCount) / 2)
                    .arg(statedOffset, 0, hexadecimal)
                    .arg(name));
            ++errorCount;
        }
        // The stated size, so that one wrong size does not make every offset after it wrong.
        runningOffset += statedSize;
    }

    emit statusMessage(QString::fromLatin1("Analyzed %1 nodes and found %2 errors")
                           .arg(nodeCount)
                           .arg(errorCount));
    return errorCount == 0;
}
