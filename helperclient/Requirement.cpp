#include "helperclient/Requirement.h"

#include <QtGlobal>

namespace quorvane {

void require(bool holds, const char* condition) {
    if (!holds) {
        qFatal("Assertion failed: %s", condition);
    }
}

} // namespace quorvane
