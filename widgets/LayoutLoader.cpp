#include "widgets/LayoutLoader.h"

#include "widgets/BlurredWindow.h"
#include "widgets/CollectEmailWindow.h"
#include "widgets/ContentArea.h"
#include "widgets/DebugMenu.h"
#include "widgets/DummyControl.h"
#include "widgets/FeatureGlyph.h"
#include "widgets/LayoutTranslator.h"
#include "widgets/ProductIcon.h"
#include "widgets/SplashWindowController.h"
#include "widgets/WhiteView.h"

#include <QFile>
#include <QLayout>
#include <QLoggingCategory>
#include <QScreen>
#include <QUiLoader>

#include <array>
#include <utility>

namespace quorvane {

namespace {

template <typename Base>
using Maker = Base* (*)(Base* parent);

template <typename Base>
using NamedMaker = std::pair<const char*, Maker<Base>>;

template <typename Base, typename Made>
Base* make(Base* parent) {
    return new Made(parent);
}

constexpr std::array<NamedMaker<QWidget>, 7> widgetClasses = {{
    {"BlurredWindow", make<QWidget, BlurredWindow>},
    {"CollectEmailWindow", make<QWidget, CollectEmailWindow>},
    {"ContentArea", make<QWidget, ContentArea>},
    {"DummyControl", make<QWidget, DummyControl>},
    {"FeatureGlyph", make<QWidget, FeatureGlyph>},
    {"ProductIcon", make<QWidget, ProductIcon>},
    {"WhiteView", make<QWidget, WhiteView>},
}};

constexpr std::array<NamedMaker<QObject>, 2> objectClasses = {{
    {"DebugMenu", make<QObject, DebugMenu>},
    {"SplashWindowController", make<QObject, SplashWindowController>},
}};

template <typename Base, std::size_t count>
Base* made(const std::array<NamedMaker<Base>, count>& classes, const QString& name, Base* parent) {
    for (const auto& [known, maker] : classes) {
        if (name == QLatin1String(known)) {
            return maker(parent);
        }
    }
    return nullptr;
}

class Loader : public QUiLoader {
  public:
    Loader() {
        setTranslationEnabled(false); // by Quorvane's own look-up instead
    }

    QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
        QWidget* widget = made(widgetClasses, className, parent);
        if (widget == nullptr) {
            widget = QUiLoader::createWidget(className, parent, name);
        }
        if (widget == nullptr) {
            unknownClass_ = className;
        } else {
            widget->setObjectName(name);
        }
        return widget;
    }

    [[nodiscard]] QString error() const {
        return unknownClass_.isEmpty()
                   ? errorString()
                   : QStringLiteral("no widget class is called \"%1\"").arg(unknownClass_);
    }

  private:
    QString unknownClass_;
};

/// Keeps Qt's own lines about a layout back while it lives; the same is told in one line, with the
/// file's name.
class SilentLoading {
  public:
    SilentLoading() { QLoggingCategory::defaultCategory()->setEnabled(QtWarningMsg, false); }

    SilentLoading(const SilentLoading&) = delete;
    SilentLoading& operator=(const SilentLoading&) = delete;

    ~SilentLoading() { QLoggingCategory::defaultCategory()->setEnabled(QtWarningMsg, true); }
};

/// The class that is not known, or nothing.
QString makeLayoutObjects(QWidget& window) {
    const QStringList names = window.property("layoutObjects").toStringList();
    for (const QString& name : names) {
        if (made<QObject>(objectClasses, name, &window) == nullptr) {
            return name;
        }
    }
    return {};
}

/// Texts that are longer than the layout's own need more room, above all those that wrap.
void fit(QWidget& window) {
    const QLayout* layout = window.layout();
    if (layout == nullptr) {
        return;
    }
    window.ensurePolished(); // the style sheet has a say in the sizes
    const QSize hint = layout->totalSizeHint();
    const int width = qMax(window.minimumWidth(), hint.width());
    const int height =
        layout->hasHeightForWidth() ? layout->totalHeightForWidth(width) : hint.height();
    window.resize(QSize(width, height).boundedTo(window.screen()->availableSize() * 0.9));
}

} // namespace

LayoutLoader::Result LayoutLoader::load(const QString& fileName) {
    const auto failed = [&](const QString& why) {
        return Result{nullptr, QStringLiteral("%1: %2").arg(fileName, why.simplified())};
    };
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        return failed(file.errorString());
    }
    Loader loader;
    std::unique_ptr<QWidget> window;
    {
        const SilentLoading silence;
        window.reset(loader.load(&file));
    }
    if (!window) {
        return failed(loader.error());
    }
    const QString unknown = makeLayoutObjects(*window);
    if (!unknown.isEmpty()) {
        return failed(QStringLiteral("no layout object is called \"%1\"").arg(unknown));
    }
    LayoutTranslator::translate(*window);
    if (auto* blurred = qobject_cast<BlurredWindow*>(window.get())) {
        blurred->awakeFromLayout();
    }
    fit(*window);
    return {std::move(window), {}};
}

} // namespace quorvane
