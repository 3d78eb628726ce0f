// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "xml/boundeddocument.h"

#include <QDomDocument>
#include <QIODevice>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

// The SAX classes are deprecated in Qt 5.15, yet its QDomDocument::setContent still runs on them,
// and they are the only ones that Qt 4 has: with the limits at this place, every other document is
// accepted or refused just as setContent does it, in one pass.
#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif

namespace {

/// What entities may make of a source: this much for any, and so many times its length for a large
/// one. Otherwise a hundred kilobytes could become gigabytes in the host's memory.
const qint64 textLengthAlwaysGranted = 1 << 20;
const qint64 textExpansionAtMost = 10;

/// Hands every event on to the handler that builds the document, and refuses the first element that
/// lies too deep and the first text that cannot have come from the source without being multiplied.
class DocumentLimiter : public QXmlContentHandler
{
public:
    /// @param sourceSize length of the source in bytes or characters
    explicit DocumentLimiter(qint64 sourceSize)
        : textLengthLeft(textLengthAlwaysGranted + sourceSize * textExpansionAtMost)
    {
    }

    void setTarget(QXmlContentHandler *handler)
    {
        target = handler;
    }

    bool startElement(const QString &namespaceUri, const QString &localName,
                      const QString &qualifiedName, const QXmlAttributes &attributes) override
    {
        if (++depth > maximumElementDepth) {
            problem = "elements are nested too deeply";
            return false;
        }
        bool isGranted = grantText(qualifiedName);
        for (int i = 0; isGranted && i < attributes.count(); ++i) {
            isGranted = grantText(attributes.value(i));
        }
        return isGranted
            && target->startElement(namespaceUri, localName, qualifiedName, attributes);
    }

    bool endElement(const QString &namespaceUri, const QString &localName,
                    const QString &qualifiedName) override
    {
        --depth;
        return target->endElement(namespaceUri, localName, qualifiedName);
    }

    QString errorString() const override
    {
        return problem ? QString(QLatin1String(problem)) : target->errorString();
    }

    void setDocumentLocator(QXmlLocator *locator) override
    {
        target->setDocumentLocator(locator);
    }
    bool startDocument() override
    {
        return target->startDocument();
    }
    bool endDocument() override
    {
        return target->endDocument();
    }
    bool startPrefixMapping(const QString &prefix, const QString &uri) override
    {
        return target->startPrefixMapping(prefix, uri);
    }
    bool endPrefixMapping(const QString &prefix) override
    {
        return target->endPrefixMapping(prefix);
    }
    bool characters(const QString &text) override
    {
        return grantText(text) && target->characters(text);
    }
    bool ignorableWhitespace(const QString &text) override
    {
        return target->ignorableWhitespace(text);
    }
    bool processingInstruction(const QString &instruction, const QString &data) override
    {
        return target->processingInstruction(instruction, data);
    }
    bool skippedEntity(const QString &name) override
    {
        return target->skippedEntity(name);
    }

private:
    bool grantText(const QString &text)
    {
        textLengthLeft -= text.length();
        if (textLengthLeft < 0) {
            problem = "entities stand for too much text";
        }
        return textLengthLeft >= 0;
    }

    QXmlContentHandler *target = nullptr;
    const char *problem = nullptr;
    int depth = 0;
    qint64 textLengthLeft;
};

/// The reader of QDomDocument::setContent, with the limiter put before whatever handler it is given.
class BoundedReader : public QXmlSimpleReader
{
public:
    explicit BoundedReader(qint64 sourceSize)
        : limiter(sourceSize)
    {
        setFeature(QLatin1String("http://xml.org/sax/features/namespaces"), false);
        setFeature(QLatin1String("http://xml.org/sax/features/namespace-prefixes"), true);
        setFeature(
            QLatin1String("http://trolltech.com/xml/features/report-whitespace-only-CharData"),
            false);
    }

    void setContentHandler(QXmlContentHandler *handler) override
    {
        limiter.setTarget(handler);
        QXmlSimpleReader::setContentHandler(&limiter);
    }

private:
    DocumentLimiter limiter;
};

} // namespace

bool setBoundedContent(QDomDocument *document, const QString &text, QString *errorMessage,
                       int *errorLine, int *errorColumn)
{
    QXmlInputSource source;
    source.setData(text);
    BoundedReader reader(text.length());
    return document->setContent(&source, &reader, errorMessage, errorLine, errorColumn);
}

bool setBoundedContent(QDomDocument *document, QIODevice *device)
{
    QXmlInputSource source(device);
    BoundedReader reader(device->size());
    return document->setContent(&source, &reader);
}
