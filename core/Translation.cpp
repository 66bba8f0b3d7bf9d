#include "core/Translation.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>

namespace quorvane {

namespace {

constexpr QLatin1String prefix("quorvane_");
constexpr QLatin1String suffix(".qm");

QStringList languagesIn(const QString& folder) {
    QStringList names = QDir(folder).entryList({prefix + QLatin1Char('*') + suffix}, QDir::Files);
    for (QString& name : names) {
        name = name.mid(prefix.size()).chopped(suffix.size());
    }
    return names;
}

} // namespace

Translation::Translation(const QString& folder, const QStringList& languages) {
    const QString language = choice(languages, languagesIn(folder));
    if (!language.isEmpty() && translator_.load(prefix + language + suffix, folder)) {
        QCoreApplication::installTranslator(&translator_);
    }
}

Translation::~Translation() {
    QCoreApplication::removeTranslator(&translator_);
}

QStringList Translation::usersLanguages() {
    const QLocale user = QLocale::system();
    return user.language() == QLocale::C ? QStringList() : user.uiLanguages();
}

// Not left to QTranslator: it looks for files, and would pass over an English that has none.
QString Translation::choice(const QStringList& languages, const QStringList& available) {
    for (const QString& each : languages) {
        QString name = QString(each).replace(QLatin1Char('-'), QLatin1Char('_'));
        while (!name.isEmpty()) {
            if (available.contains(name)) {
                return name;
            }
            if (name == QLatin1String("en")) {
                return {};
            }
            name.truncate(qMax(name.lastIndexOf(QLatin1Char('_')), 0));
        }
    }
    return {};
}

} // namespace quorvane
