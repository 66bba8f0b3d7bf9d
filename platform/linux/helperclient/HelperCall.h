#pragma once

#include "platform/linux/common/BusAnswer.h"
#include "platform/linux/common/BusCall.h"

#include <QLatin1String>
#include <QString>

#include <functional>

namespace quorvane {

/// One command for the privileged helper. Exactly one of the two handlers runs, once, on the thread
/// of the session that sends it; none when the session ends before.
struct HelperCall {
    BusCall question;
    QLatin1String replySignature; ///< a reply of another type is an error
    std::function<void(const BusAnswer& reply)> replied;
    std::function<void(const QString& error)> failed;
};

} // namespace quorvane
