#include "platform/linux/common/LinuxLog.h"

#include <cstdio>
#include <systemd/sd-journal.h>
#include <unistd.h>

namespace quorvane {

// sd_journal_send reports success when nobody listens, so that has to be found out beforehand.
LinuxLog::LinuxLog(const char* identifier)
    : identifier_(identifier), hasJournal_(::access("/run/systemd/journal/socket", W_OK) == 0) {}

void LinuxLog::write(const QString& line) {
    const QByteArray text = line.toUtf8();
    if (hasJournal_ && sd_journal_send("MESSAGE=%s", text.constData(), "PRIORITY=%i", 5,
                                       "SYSLOG_IDENTIFIER=%s", identifier_, nullptr) >= 0) {
        return;
    }
    std::fprintf(stderr, "%s\n", text.constData());
}

} // namespace quorvane
