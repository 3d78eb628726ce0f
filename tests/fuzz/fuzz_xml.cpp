// SPDX-FileCopyrightText: 2026 Loomwright plug-in team
// SPDX-License-Identifier: MIT

#include "fuzzing.h"
#include "xml/xmlparser.h"

#include <QBuffer>
#include <QDomDocument>

#include <algorithm>

namespace {

struct Outcome {
    bool parsed = false;
    QString error;
    int line = 0;
    int column = 0;
    QDomDocument document;
};

bool isLimit(const QString &error)
{
    return error.startsWith(QLatin1String("elements are nested"))
        || error.startsWith(QLatin1String("a declaration is nested"))
        || error.startsWith(QLatin1String("entities stand for"));
}

/// How deep the elements below @p node nest.
int depthBelow(const QDomNode &node)
{
    int depth = 0;
    for (QDomElement child = node.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        depth = std::max(depth, 1 + depthBelow(child));
    }
    return depth;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QString text = textOf(data, size);
    Outcome ours;
    ours.parsed = parseXml(&ours.document, text, &ours.error, &ours.line, &ours.column);
    if (isLimit(ours.error)) {
        return 0;
    }
    Outcome plain;
    plain.parsed = plain.document.setContent(text, &plain.error, &plain.line, &plain.column);
    require(ours.parsed == plain.parsed, "within the limits a document parses as with Qt alone");
    require(ours.error == plain.error && ours.line == plain.line && ours.column == plain.column,
            "within the limits an error is Qt's own");
    require(!ours.parsed || ours.document.toString() == plain.document.toString(),
            "within the limits the document is the one of Qt alone");
    require(depthBelow(ours.document) <= maxElementDepth, "no document is too deep");

    QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    QDomDocument fromDevice;
    if (parseXml(&fromDevice, &device)) {
        QDomDocument plainFromDevice;
        device.seek(0);
        require(plainFromDevice.setContent(&device)
                    && fromDevice.toString() == plainFromDevice.toString(),
                "within the limits a file gives the document of Qt alone");
    }
    return 0;
}
