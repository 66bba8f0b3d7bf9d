#include "apps/helper/AttributeDriver.h"

#include <algorithm>

namespace quorvane {

namespace {

constexpr QLatin1String attributeKind("attribute");

} // namespace

AttributeDriver::AttributeDriver(const KernelAttributes& attributes, PuttingBackJournal& journal,
                                 LogSink& log)
    : attributes_(attributes), journal_(journal), log_(log) {}

bool AttributeDriver::probe() const {
    const QList<AttributeValue> all = slowing();
    return std::any_of(all.cbegin(), all.cend(), [this](const AttributeValue& each) {
        const std::optional<QString> now = attributes_.read(each.attribute);
        return now && accepts({each.attribute, *now});
    });
}

void AttributeDriver::engage(const Reported& reported) {
    for (const AttributeValue& wanted : slowing()) {
        if (const std::optional<QString> error = change(wanted)) {
            putBackEntries();
            reported({false, QStringLiteral("%1: %2").arg(wanted.attribute, *error)});
            return;
        }
    }
    reported({true, name()});
}

void AttributeDriver::release(const Reported& reported) {
    const QStringList errors = putBackEntries();
    reported({errors.isEmpty(), errors.isEmpty() ? name() : errors.join(QStringLiteral("; "))});
}

void AttributeDriver::putBackLeftovers() {
    putBackEntries();
}

// An attribute that holds the value already is somebody else's doing: it is not ours to put back.
std::optional<QString> AttributeDriver::change(const AttributeValue& wanted) {
    const std::optional<QString> found = attributes_.read(wanted.attribute);
    if (!found || !accepts({wanted.attribute, *found})) {
        return QStringLiteral("it cannot be read");
    }
    if (*found == wanted.value) {
        return std::nullopt;
    }
    if (!record(wanted, *found)) {
        return QStringLiteral("what was found could not be recorded, so nothing was changed");
    }
    return attributes_.write(wanted.attribute, wanted.value);
}

bool AttributeDriver::record(const AttributeValue& wanted, const QString& found) {
    return journal_.update([&](PuttingBackJournal::Entries& entries) {
        entries.push_back({attributeKind, wanted.attribute, found, wanted.value, journal_.self()});
    });
}

bool AttributeDriver::isOurs(const JournalEntry& entry) const {
    return entry.kind == attributeKind && accepts({entry.key, entry.found.toString()}) &&
           accepts({entry.key, entry.set.toString()});
}

std::optional<QString> AttributeDriver::putBack(const JournalEntry& entry) const {
    const std::optional<QString> now = attributes_.read(entry.key);
    if (!now) {
        return std::nullopt; // the processor was taken out meanwhile
    }
    if (*now != entry.set.toString()) {
        log_.write(QStringLiteral("%1 holds \"%2\" by now, which is not what was set: it is left "
                                  "alone.")
                       .arg(entry.key, *now));
        return std::nullopt;
    }
    return attributes_.write(entry.key, entry.found.toString());
}

// The last change first, so that one on top of another is undone before it.
QStringList AttributeDriver::putBackEntries() {
    QStringList errors;
    const bool isWritten = journal_.update([&](PuttingBackJournal::Entries& entries) {
        PuttingBackJournal::Entries kept;
        for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
            if (!isOurs(*entry) || !journal_.mayAlter(*entry)) {
                kept.insert(kept.begin(), *entry);
            } else if (const std::optional<QString> error = putBack(*entry)) {
                errors += QStringLiteral("%1: %2").arg(entry->key, *error);
                kept.insert(kept.begin(), *entry);
            }
        }
        entries = kept;
    });
    if (!isWritten) {
        errors += QStringLiteral("the journal cannot be used");
    }
    for (const QString& error : errors) {
        log_.write(QStringLiteral("Not put back: ") + error);
    }
    return errors;
}

} // namespace quorvane
