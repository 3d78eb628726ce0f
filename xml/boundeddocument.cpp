// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "xml/boundeddocument.h"

#include <QDomDocument>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

// The SAX classes are deprecated in Qt 5.15, yet its QDomDocument::setContent still runs on them,
// and they are the only ones that Qt 4 has: limiting the depth at this place accepts exactly the
// documents that setContent accepts, in one pass.
#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif

namespace {

/// Hands every event on to the handler that builds the document and refuses the first element that
/// lies too deep.
class DepthLimiter : public QXmlContentHandler
{
public:
    void setTarget(QXmlContentHandler *handler)
    {
        target = handler;
    }

    bool startElement(const QString &namespaceUri, const QString &localName,
                      const QString &qualifiedName, const QXmlAttributes &attributes) override
    {
        if (++depth > maximumElementDepth) {
            return false;
        }
        return target->startElement(namespaceUri, localName, qualifiedName, attributes);
    }

    bool endElement(const QString &namespaceUri, const QString &localName,
                    const QString &qualifiedName) override
    {
        --depth;
        return target->endElement(namespaceUri, localName, qualifiedName);
    }

    QString errorString() const override
    {
        if (depth > maximumElementDepth) {
            return QLatin1String("elements are nested too deeply");
        }
        return target->errorString();
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
        return target->characters(text);
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
    QXmlContentHandler *target = nullptr;
    int depth = 0;
};

/// The reader of QDomDocument::setContent, with the limiter put before whatever handler it is given.
class BoundedDepthReader : public QXmlSimpleReader
{
public:
    BoundedDepthReader()
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
    DepthLimiter limiter;
};

} // namespace

bool setBoundedContent(QDomDocument *document, const QString &text, QString *errorMessage,
                       int *errorLine, int *errorColumn)
{
    QXmlInputSource source;
    source.setData(text);
    BoundedDepthReader reader;
    return document->setContent(&source, &reader, errorMessage, errorLine, errorColumn);
}

bool setBoundedContent(QDomDocument *document, QIODevice *device)
{
    QXmlInputSource source(device);
    BoundedDepthReader reader;
    return document->setContent(&source, &reader);
}
