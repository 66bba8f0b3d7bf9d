#pragma once

#include <QString>
#include <QWidget>

#include <memory>

namespace quorvane {

/// Makes windows from Qt Designer's layout files, with Quorvane's own classes in them.
///
/// A layout file holds widgets only. The classes of other objects that are to be made with them
/// are named, one an entry, in the window's dynamic property "layoutObjects"; they become the
/// window's children.
class LayoutLoader {
  public:
    struct Result {
        std::unique_ptr<QWidget> window; ///< not shown yet; null when it could not be loaded
        QString error;                   ///< in that case: one line with the file and what is wrong
    };

    /// The file's window with its texts in the user's language, as large as these need.
    [[nodiscard]] static Result load(const QString& fileName);
};

} // namespace quorvane
