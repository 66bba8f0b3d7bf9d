#include "platform/linux/Translation.h"

#include <QCoreApplication>
#include <QLocale>

namespace quorvane {

Translation::Translation(const QString& folder) {
    const QLocale user = QLocale::system();
    // English needs no file, and a French file must not win over an English user who knows French.
    if (user.language() != QLocale::English && user.language() != QLocale::C &&
        translator_.load(user, QStringLiteral("quorvane"), QStringLiteral("_"), folder)) {
        QCoreApplication::installTranslator(&translator_);
    }
}

Translation::~Translation() {
    QCoreApplication::removeTranslator(&translator_);
}

} // namespace quorvane
