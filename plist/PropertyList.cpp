#include "plist/PropertyList.h"

#include "plist/PropertyListReader.h"
#include "plist/PropertyListWriter.h"
#include "plist/XmlText.h"

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
