#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>

namespace quorvane {

/// The user's language for all texts, as long as this object lives; the same in every program of
/// the bundle. Needs the application object. Main thread only.
class Translation {
  public:
    /// `folder` has a file quorvane_<language>.qm for each language besides English. Without one of
    /// the user's languages the texts stay English.
    explicit Translation(const QString& folder, const QStringList& languages = usersLanguages());
    ~Translation();

    Translation(const Translation&) = delete;
    Translation& operator=(const Translation&) = delete;

    /// What the environment says, the preferred one first, as BCP 47 has them ("de-AT"). Empty when
    /// the user wants texts as they were written: the locale "C", whatever LANGUAGE says then.
    [[nodiscard]] static QStringList usersLanguages();

    /// The first of `languages` that is among `available` ("de", "pt_BR"), or is so without its
    /// region. English always is, and needs no file: it is the empty text, as when there is none.
    [[nodiscard]] static QString choice(const QStringList& languages, const QStringList& available);

  private:
    QTranslator translator_;
};

} // namespace quorvane
