#pragma once

#include "apps/helper/Driver.h"
#include "apps/helper/KernelAttributes.h"
#include "platform/linux/common/PuttingBackJournal.h"

#include <QList>

namespace quorvane {

/// One attribute and what it is to hold.
struct AttributeValue {
    QString attribute; ///< beneath /sys
    QString value;
};

/// A way that consists of writing attributes of the kernel. What an attribute holds goes to the
/// journal before it is changed, so that a later run can put it back.
///
/// A subclass tells which attributes there are and which values they may hold.
class AttributeDriver : public Driver {
  public:
    /// The references must outlive this.
    AttributeDriver(const KernelAttributes& attributes, PuttingBackJournal& journal, LogSink& log);

    [[nodiscard]] bool probe() const override;
    void engage(const Reported& reported) override;
    void release(const Reported& reported) override;

    /// Puts back what dead runs have left changed.
    void putBackLeftovers();

  protected:
    [[nodiscard]] const KernelAttributes& attributes() const { return attributes_; }

    /// The attributes that this machine has, each with the value that makes it slower.
    [[nodiscard]] virtual QList<AttributeValue> slowing() const = 0;

    /// Whether the attribute is this driver's and may hold the value. What stands in a journal is
    /// held against it before it is written anywhere.
    [[nodiscard]] virtual bool accepts(const AttributeValue& pair) const = 0;

    /// Of the attributes that are "0" or "1".
    [[nodiscard]] static bool isOnOrOff(const QString& value) {
        return value == QLatin1String("0") || value == QLatin1String("1");
    }

  private:
    [[nodiscard]] bool isOurs(const JournalEntry& entry) const;
    [[nodiscard]] std::optional<QString> change(const AttributeValue& wanted);
    [[nodiscard]] bool record(const AttributeValue& wanted, const QString& found);
    [[nodiscard]] std::optional<QString> putBack(const JournalEntry& entry) const;
    QStringList putBackEntries();

    const KernelAttributes& attributes_;
    PuttingBackJournal& journal_;
    LogSink& log_;
};

} // namespace quorvane
