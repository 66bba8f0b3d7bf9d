#include "platform/linux/displays/LinuxDisplays.h"

#include <algorithm>
#include <cerrno>
#include <cmath>

namespace quorvane {

namespace {

float fraction(int raw, int maximum) {
    return std::min(static_cast<float>(raw) / static_cast<float>(maximum), 1.0F);
}

int rawFor(float fraction, int maximum) {
    return static_cast<int>(std::lround(static_cast<double>(fraction) * maximum));
}

} // namespace

LinuxDisplays::LinuxDisplays(const QDBusConnection& systemBus, PuttingBackJournal& journal,
                             LogSink& log, const QString& sysfsRoot)
    : log_(log), journal_(journal), backlights_(sysfsRoot), writer_(systemBus, log, backlights_) {
    QObject::connect(&writer_, &BacklightWriter::settled, &writer_,
                     [this](const QString& device, bool isWritten) { settled(device, isWritten); });
}

Displays::List LinuxDisplays::activeDisplays(std::size_t capacity) const {
    List list;
    for (const QString& device : backlights_.names()) {
        if (list.displays.size() == capacity) {
            break;
        }
        if (!devices_.contains(device)) {
            devices_.append(device);
        }
        list.displays.push_back(static_cast<DisplayId>(devices_.indexOf(device) + 1));
    }
    return list;
}

QString LinuxDisplays::deviceOf(DisplayId display) const {
    return devices_.value(static_cast<qsizetype>(display) - 1);
}

Displays::Reading LinuxDisplays::brightness(DisplayId display) const {
    const QString device = deviceOf(display);
    if (writer_.underWay(device)) {
        return {0, dimmings_.value(device).wanted};
    }
    const std::optional<int> raw = backlights_.raw(device);
    const std::optional<int> maximum = backlights_.maximum(device);
    return raw && maximum ? Reading{0, fraction(*raw, *maximum)} : Reading{ENODEV};
}

int LinuxDisplays::setBrightness(DisplayId display, float brightness) {
    const QString device = deviceOf(display);
    const std::optional<int> raw = backlights_.raw(device);
    const std::optional<int> maximum = backlights_.maximum(device);
    if (!raw || !maximum) {
        return ENODEV;
    }
    if (std::isnan(brightness)) {
        return EINVAL;
    }
    const float inRange = std::clamp(brightness, 0.0F, 1.0F);
    const int wanted = rawFor(inRange, *maximum);
    if (!note(device, *raw, wanted)) {
        return EIO;
    }
    dimmings_[device].hasEnded = false;
    write(device, wanted, inRange);
    return 0;
}

/// Writes down what will have to be put back. What was found first stays, also when it was a run
/// that has died since that found it.
bool LinuxDisplays::note(const QString& device, int inPlace, int wanted) {
    const int expected = writer_.underWay(device).value_or(inPlace);
    return journal_.update([&](PuttingBackJournal::Entries& entries) {
        std::vector<DisplayChange> earlier = take(entries, device, Whose::Dead);
        const std::vector<DisplayChange> own = take(entries, device, Whose::Own);
        DisplayChange change{expected, {}};
        if (dimmings_.value(device).hasEnded) {
            earlier.insert(earlier.end(), own.begin(), own.end());
        } else if (!own.empty()) {
            change = own.front();
        }
        change.found = tracedBack(change.found, earlier).found;
        for (const int raw : tracedBack(inPlace, earlier).set) {
            change.addSet(raw);
        }
        change.addSet(wanted);
        entries.push_back(displayEntry(device, change, journal_.self()));
    });
}

void LinuxDisplays::write(const QString& device, int raw, float brightness) {
    dimmings_[device].wanted = brightness;
    writer_.write(device, raw);
}

void LinuxDisplays::changesEnded() {
    const std::optional<PuttingBackJournal::Entries> entries = journal_.entries();
    for (const JournalEntry& entry : entries.value_or(PuttingBackJournal::Entries())) {
        if (!isDisplayEntry(entry) || entry.writer != journal_.self()) {
            continue;
        }
        dimmings_[entry.key].hasEnded = true;
        if (!writer_.underWay(entry.key)) {
            settled(entry.key, !writer_.hasFailed(entry.key));
        }
    }
}

void LinuxDisplays::putBack() {
    const std::optional<PuttingBackJournal::Entries> entries = journal_.entries();
    QStringList devices;
    for (const JournalEntry& entry : entries.value_or(PuttingBackJournal::Entries())) {
        if (isDisplayEntry(entry) && journal_.mayAlter(entry) && !devices.contains(entry.key)) {
            devices.append(entry.key);
        }
    }
    for (const QString& device : devices) {
        putBack(device);
    }
}

void LinuxDisplays::putBack(const QString& device) {
    const std::optional<int> inPlace = backlights_.raw(device);
    const std::optional<int> maximum = backlights_.maximum(device);
    if (!inPlace || !maximum) {
        return;
    }
    const std::optional<int> underWay = writer_.underWay(device);
    const int expected = underWay.value_or(*inPlace);
    std::optional<DisplayChange> trace;
    // Putting back goes on when the journal can only be read: the entry is then found again later,
    // and leads to nothing.
    [[maybe_unused]] const bool isNoted =
        journal_.update([&](PuttingBackJournal::Entries& entries) {
            const PuttingBackJournal::Entries before = entries;
            trace = tracedBack(expected, takeAll(entries, device));
            if (trace->found != expected) {
                entries.push_back(displayEntry(device, *trace, journal_.self()));
            } else if (underWay) {
                entries = before; // it is being put back already
            }
        });
    dimmings_[device].hasEnded = true;
    if (trace && trace->found != expected) {
        write(device, trace->found, fraction(trace->found, *maximum));
    }
}

/// Brings the journal up to date after nothing is under way for the device any more.
void LinuxDisplays::settled(const QString& device, bool isWritten) {
    const bool hasEnded = dimmings_.value(device).hasEnded;
    [[maybe_unused]] const bool isNoted =
        journal_.update([&](PuttingBackJournal::Entries& entries) {
            const auto own = std::find_if(
                entries.begin(), entries.end(),
                [this, &device](const JournalEntry& entry) { return isOwn(entry, device); });
            if (own == entries.end()) {
                return;
            }
            if (hasEnded && isDone(*own, isWritten)) {
                entries.erase(own);
            } else if (const auto change = displayChange(*own); change && isWritten) {
                *own = displayEntry(device, {change->found, {change->set.back()}}, own->writer);
            }
        });
}

bool LinuxDisplays::waitForWrites(std::chrono::milliseconds limit) {
    return writer_.waitUntilIdle(limit);
}

bool LinuxDisplays::isOwn(const JournalEntry& entry, const QString& device) const {
    return isDisplayEntry(entry) && entry.key == device && entry.writer == journal_.self();
}

/// Whether nothing is left to put back: it has been, or the display has another brightness than the
/// one that was set, which belongs to somebody else.
bool LinuxDisplays::isDone(const JournalEntry& entry, bool isWritten) const {
    const std::optional<DisplayChange> change = displayChange(entry);
    if (isWritten || !change) {
        return true;
    }
    const std::optional<int> raw = backlights_.raw(entry.key);
    return raw && (*raw == change->found || !change->mayHaveSet(*raw));
}

std::vector<DisplayChange> LinuxDisplays::take(PuttingBackJournal::Entries& entries,
                                               const QString& device, Whose whose) {
    std::vector<DisplayChange> taken;
    std::erase_if(entries, [&](const JournalEntry& entry) {
        if (!isDisplayEntry(entry) || entry.key != device || !journal_.mayAlter(entry) ||
            isOwn(entry, device) != (whose == Whose::Own)) {
            return false;
        }
        if (const std::optional<DisplayChange> change = displayChange(entry)) {
            taken.push_back(*change);
        } else {
            log_.write(QStringLiteral("A journal entry tells no brightness to put back and is "
                                      "struck off: %1")
                           .arg(QString::fromUtf8(journalLine(entry))));
        }
        return true;
    });
    return taken;
}

std::vector<DisplayChange> LinuxDisplays::takeAll(PuttingBackJournal::Entries& entries,
                                                  const QString& device) {
    std::vector<DisplayChange> all = take(entries, device, Whose::Dead);
    const std::vector<DisplayChange> own = take(entries, device, Whose::Own);
    all.insert(all.end(), own.begin(), own.end());
    return all;
}

} // namespace quorvane
