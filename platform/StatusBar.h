#pragma once

#include "platform/AttributedString.h"

#include <QString>

#include <memory>

namespace quorvane {

class Menu;

/// Which side of the text the image stands on. The numbers are the settings' and the log's.
enum class ImagePosition : unsigned {
    Left = 2,
    Right = 3,
};

/// One item of the desktop's status bar: an image, a short text beside it, and a menu. It is there
/// as long as this object lives, also when the bar starts later than the program or starts anew.
/// What is set to the value that it has already costs nothing. Main thread only.
class StatusItem {
  public:
    /// The length of an item that is as wide as its image and text.
    static constexpr double variableLength = -1.0;

    StatusItem() = default;
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    virtual ~StatusItem() = default;

    /// `menu` has to live as long as this item.
    virtual void setMenu(Menu& menu) = 0;

    /// An empty text: the image alone.
    virtual void setAttributedTitle(const AttributedString& title) = 0;

    /// Points, or `variableLength`.
    virtual void setLength(double length) = 0;

    /// The name of one of the bundle's status images. One that is not there shows as no image.
    virtual void setImage(const QString& name) = 0;

    /// Whether the image is a stencil that the bar draws in its own colour.
    virtual void setTemplate(bool isTemplate) = 0;

    virtual void setImagePosition(ImagePosition position) = 0;
};

/// The desktop's status bar.
class StatusBar {
  public:
    virtual ~StatusBar() = default;

    /// `length` in points, or `StatusItem::variableLength`. Where the desktop has no status bar the
    /// item waits for one.
    [[nodiscard]] virtual std::unique_ptr<StatusItem> statusItemWithLength(double length) = 0;
};

} // namespace quorvane
