#pragma once

#include "apps/helper/ExtensionBundles.h"

#include <QList>

namespace quorvane {

/// The file in which everybody can read what is loaded, in the layout of the list of loaded kernel
/// extensions on systems that have such: index, references, address, size, wired, name (version).
/// Address and sizes are 0, as no code is loaded. There is no file while nothing is loaded.
class LoadedList {
  public:
    explicit LoadedList(QString path);

    /// Returns the error, or nothing.
    [[nodiscard]] std::optional<QString> write(const QList<Extension>& loaded) const;

  private:
    QString path_;
};

} // namespace quorvane
