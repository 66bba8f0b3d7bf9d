#include "core/PropertyList.h"

#include "core/PropertyListReader.h"
#include "core/PropertyListWriter.h"
#include "core/XmlText.h"

namespace quorvane {

PropertyListResult readPropertyList(const QByteArray& xml) {
    if (xml.startsWith("bplist")) {
        return {std::nullopt, QStringLiteral("this is a binary property list (it begins with "
                                             "\"bplist\"); only XML property lists are read")};
    }
    const auto decoded = decodeXml(xml);
    return decoded.text ? PropertyListReader(*decoded.text).read()
                        : PropertyListResult{std::nullopt, decoded.error};
}

std::optional<QByteArray> writePropertyList(const QVariant& root) {
    return PropertyListWriter().write(root);
}

} // namespace quorvane
