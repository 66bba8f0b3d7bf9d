#pragma once

#include <QByteArray>
#include <QVariantList>
#include <QVariantMap>
#include <QXmlStreamWriter>

#include <optional>

namespace quorvane {

/// Writes one property list; the layout is the one of the format's other tools. For one use.
class PropertyListWriter {
  public:
    /// Nothing when a value has no form in a property list.
    [[nodiscard]] std::optional<QByteArray> write(const QVariant& root);

  private:
    // `depth` is the number of containers around the value, and of tabs before it. A function
    // returns whether the value has a form in a property list.
    bool value(const QVariant& value, int depth);
    bool dict(const QVariantMap& map, int depth);
    bool array(const QVariantList& list, int depth);
    bool text(const QString& element, const QString& text);
    void data(const QByteArray& data, int depth);
    void newLine(int depth);

    QByteArray bytes_;
    QXmlStreamWriter xml_{&bytes_};
};

} // namespace quorvane
