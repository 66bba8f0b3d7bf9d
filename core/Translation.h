#pragma once

#include <QString>
#include <QTranslator>

namespace quorvane {

/// The user's language for all texts, as long as this object lives. Needs the application object.
/// Main thread only.
class Translation {
  public:
    /// `folder` has a file quorvane_<language>.qm for each language besides English. Without one of
    /// the user's languages the texts stay English.
    explicit Translation(const QString& folder);
    ~Translation();

    Translation(const Translation&) = delete;
    Translation& operator=(const Translation&) = delete;

  private:
    QTranslator translator_;
};

} // namespace quorvane
