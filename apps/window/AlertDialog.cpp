#include "apps/window/AlertDialog.h"

#include "widgets/ContentArea.h"
#include "widgets/ProductIcon.h"

#include <QBoxLayout>
#include <QLabel>
#include <QScreen>

namespace quorvane {

namespace {

constexpr int textWidth = 380;  // pixels; about 60 letters, which is read without losing the line
constexpr int rowWidth = 520;   // pixels that buttons may take beside each other
constexpr int iconSide = 56;    // pixels
constexpr int margin = 24;      // pixels
constexpr int buttonWidth = 96; // pixels, at least

QLabel* plainLabel(const QString& text) {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setWordWrap(true);
    label->setMinimumWidth(textWidth);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel* heading(const QString& text) {
    QLabel* label = plainLabel(text);
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.15);
    label->setFont(font);
    return label;
}

int widthOf(const QList<QPushButton*>& buttons) {
    int width = 0;
    for (const QPushButton* button : buttons) {
        width += button->sizeHint().width();
    }
    return width;
}

} // namespace

AlertDialog::AlertDialog(const Alert& alert, QWidget* parent)
    : QDialog(parent), safeButton_(alert.safeButton) {
    setWindowTitle(QStringLiteral("Quorvane"));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowCloseButtonHint);
    setModal(true);
    setAccessibleName(alert.messageText);
    setAccessibleDescription(alert.informativeText);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(margin);
    addTexts(*layout, alert);
    addButtons(*layout, alert.buttons);

    ensurePolished();
    const QSize room = screen()->availableSize() * 0.9;
    const int width = qMin(layout->totalSizeHint().width(), room.width());
    const int height = layout->hasHeightForWidth() ? layout->totalHeightForWidth(width)
                                                   : layout->totalSizeHint().height();
    resize(width, qMin(height, room.height()));
}

void AlertDialog::addTexts(QBoxLayout& layout, const Alert& alert) {
    auto* content = new QWidget;
    auto* texts = new QVBoxLayout(content);
    texts->setContentsMargins(0, 0, 0, 0);
    texts->addWidget(heading(alert.messageText));
    if (!alert.informativeText.isEmpty()) {
        texts->addWidget(plainLabel(alert.informativeText));
    }
    texts->addStretch();

    auto* area = new ContentArea;
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setAccessibleName(alert.messageText);

    auto* icon = new ProductIcon;
    icon->setFixedSize(iconSide, iconSide);
    auto* row = new QHBoxLayout;
    row->setSpacing(margin * 2 / 3);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addWidget(area, 1);
    layout.addLayout(row, 1);
}

void AlertDialog::addButtons(QBoxLayout& layout, const QStringList& texts) {
    for (const QString& text : texts) {
        QString label = text;
        // Otherwise it would make a shortcut of the letter behind it, and not be seen.
        label.replace(u'&', QStringLiteral("&&"));
        auto* button = new QPushButton(label, this);
        button->setAccessibleName(text);
        button->setMinimumWidth(buttonWidth);
        const int index = static_cast<int>(buttons_.size());
        connect(button, &QPushButton::clicked, this, [this, index] { done(index); });
        buttons_ += button;
    }
    const bool fitsInRow = widthOf(buttons_) <= rowWidth;
    auto* row = new QBoxLayout(fitsInRow ? QBoxLayout::RightToLeft : QBoxLayout::TopToBottom);
    for (QPushButton* button : buttons_) {
        row->addWidget(button);
    }
    if (fitsInRow) {
        row->addStretch();
    }
    layout.addLayout(row);
    buttons_.first()->setDefault(true);
    buttons_.first()->setFocus();
}

void AlertDialog::reject() {
    done(safeButton_);
}

} // namespace quorvane
