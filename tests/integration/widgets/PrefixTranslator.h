#pragma once

#include <QCoreApplication>
#include <QTranslator>

#include <utility>

namespace quorvane::test {

/// Knows every text of the program, and puts something before it; as long as the object lives.
class PrefixTranslator : public QTranslator {
  public:
    /// `longer` is the part of a text that is said once more behind it.
    explicit PrefixTranslator(QString prefix, double longer = 0)
        : prefix_(std::move(prefix)), longer_(longer) {
        QCoreApplication::installTranslator(this);
    }

    [[nodiscard]] bool isEmpty() const override { return false; }

    [[nodiscard]] QString translate(const char* context, const char* text, const char*,
                                    int) const override {
        if (qstrcmp(context, "Quorvane") != 0) {
            return {};
        }
        const QString english = QString::fromUtf8(text);
        const auto more = static_cast<qsizetype>(longer_ * static_cast<double>(english.size()));
        return prefix_ + english + english.left(more);
    }

  private:
    QString prefix_;
    double longer_;
};

} // namespace quorvane::test
