#pragma once

#include "plist/PropertyList.h"

#include <QVariantList>
#include <QVariantMap>
#include <QXmlStreamReader>

namespace quorvane {

/// Reads one property list. For one use.
///
/// The first error ends the walk through the document: it is kept in the parser, and whatever the
/// private functions return after it means nothing.
class PropertyListReader {
  public:
    /// `text` has passed decodeXml, without which a hostile one may cost much time and memory.
    explicit PropertyListReader(const QString& text) : xml_(text) {
        xml_.setNamespaceProcessing(false);
    }

    [[nodiscard]] PropertyListResult read();

  private:
    QVariant document();

    // These begin behind a start tag and end behind its end tag. `depth` is the number of
    // containers around the value, in `dict` and `array` with this one.
    QVariant value(int depth);
    QVariantMap dict(int depth);
    QVariantList array(int depth);
    QVariant scalar(const QString& element);
    QString text();

    /// Goes on to the next start or end tag, or to the end of the document. Between them there may
    /// be comments, processing instructions and white space; anything else is an error.
    QXmlStreamReader::TokenType nextTag();

    /// Qt's parser lets a DOCTYPE pass anywhere, and more than one.
    void checkDocumentType();

    void fail(const QString& message);

    QXmlStreamReader xml_;
    bool mayHaveDocumentType_ = true;
};

} // namespace quorvane
