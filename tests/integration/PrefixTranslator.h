#pragma once

#include <QCoreApplication>
#include <QTranslator>

#include <utility>

namespace quorvane::test {

/// Knows every text of the program, and puts something before it; as long as the object lives.
class PrefixTranslator : public QTranslator {
  public:
    explicit PrefixTranslator(QString prefix) : prefix_(std::move(prefix)) {
        QCoreApplication::installTranslator(this);
    }

    [[nodiscard]] bool isEmpty() const override { return false; }

    [[nodiscard]] QString translate(const char* context, const char* text, const char*,
                                    int) const override {
        return qstrcmp(context, "Quorvane") == 0 ? prefix_ + QString::fromUtf8(text) : QString();
    }

  private:
    QString prefix_;
};

} // namespace quorvane::test
