#include "platform/linux/applications/X11WindowReader.h"

#include <QList>
#include <QString>

#include <unistd.h>

namespace quorvane {

namespace {

// Lengths in units of 4 bytes, as the server counts them.
constexpr std::uint32_t longestText = 128;
constexpr std::uint32_t mostAtoms = 32;

QByteArray hostName() {
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? QByteArray(name.data())
                                                            : QByteArray();
}

QByteArray bytesOf(const xcb_get_property_reply_t* reply) {
    if (reply == nullptr || reply->format != 8) {
        return {};
    }
    return {static_cast<const char*>(::xcb_get_property_value(reply)),
            ::xcb_get_property_value_length(reply)};
}

// Each of the numbers of a property, in order, until `visit` returns true.
template <class Visit>
void eachNumber(const xcb_get_property_reply_t* reply, Visit visit) {
    if (reply == nullptr || reply->format != 32) {
        return;
    }
    const auto* const numbers = static_cast<const std::uint32_t*>(::xcb_get_property_value(reply));
    for (std::uint32_t at = 0; at < reply->value_len; ++at) {
        if (visit(numbers[at])) {
            return;
        }
    }
}

// The old texts of X are Latin-1; today's programs write UTF-8 there all the same.
QByteArray asUtf8(const QByteArray& bytes) {
    return bytes.isValidUtf8() ? bytes : QString::fromLatin1(bytes).toUtf8();
}

} // namespace

X11WindowReader::X11WindowReader(const X11Connection& connection, xcb_window_t window)
    : id_(window) {
    window_.id = WindowId{window};
    const auto ask = [&](Property property, xcb_atom_t atom, std::uint32_t length) {
        sequences_.at(property) = ::xcb_get_property(connection.xcb(), 0, window, atom,
                                                     XCB_GET_PROPERTY_TYPE_ANY, 0, length)
                                      .sequence;
    };
    ask(Machine, XCB_ATOM_WM_CLIENT_MACHINE, longestText);
    ask(ClaimedProcess, connection.atom(X11Atom::ProcessIdentifier), 1);
    ask(Class, XCB_ATOM_WM_CLASS, longestText);
    ask(GtkApplication, connection.atom(X11Atom::GtkApplicationId), longestText);
    ask(Type, connection.atom(X11Atom::WindowType), mostAtoms);
    ask(State, connection.atom(X11Atom::WindowState), mostAtoms);
    if (connection.knowsProcesses()) {
        sequences_.at(ServersWord) = connection.askForProcess(window);
    }
}

// Answers come in the order of the requests.
bool X11WindowReader::poll(const X11Connection& connection) {
    for (; next_ < Count; ++next_) {
        if (sequences_.at(next_) == 0) {
            continue;
        }
        X11Reply<void> reply;
        if (!connection.poll(sequences_.at(next_), reply)) {
            return false;
        }
        if (next_ == ServersWord) {
            serversWord_ = X11Connection::processOf(reply.get());
        } else {
            take(connection, static_cast<const xcb_get_property_reply_t*>(reply.get()));
        }
    }
    decideProcess();
    return true;
}

void X11WindowReader::take(const X11Connection& connection, const xcb_get_property_reply_t* reply) {
    switch (next_) {
    case Machine:
        hasMachine_ = !bytesOf(reply).isEmpty();
        isThisMachine_ = hasMachine_ && bytesOf(reply).split('\0').first() == hostName();
        break;
    case ClaimedProcess:
        eachNumber(reply, [this](std::uint32_t number) {
            claimedProcess_ = static_cast<std::int32_t>(number);
            return true;
        });
        break;
    case Class:
        readClass(bytesOf(reply), window_.names);
        break;
    case GtkApplication:
        window_.names.applicationId = asUtf8(bytesOf(reply).split('\0').first());
        break;
    case Type:
        takeType(connection, reply);
        break;
    default:
        takeState(connection, reply);
    }
}

// The first type that is known counts; clients put those of their own desktop before it.
void X11WindowReader::takeType(const X11Connection& connection,
                               const xcb_get_property_reply_t* reply) {
    eachNumber(reply, [this, &connection](std::uint32_t number) {
        const X11Atom type = connection.known(number);
        if (type < X11Atom::TypeNormal || type > X11Atom::TypeDragAndDrop) {
            return false;
        }
        window_.isOrdinary = type <= X11Atom::TypeUtility;
        return true;
    });
}

void X11WindowReader::takeState(const X11Connection& connection,
                                const xcb_get_property_reply_t* reply) {
    eachNumber(reply, [this, &connection](std::uint32_t number) {
        const bool isSkipped = number == connection.atom(X11Atom::StateSkipTaskbar);
        window_.isOrdinary = window_.isOrdinary && !isSkipped;
        return isSkipped;
    });
}

void X11WindowReader::readClass(const QByteArray& bytes, WindowNames& names) {
    const QList<QByteArray> parts = bytes.split('\0');
    names.instance = asUtf8(parts.value(0));
    names.windowClass = parts.size() > 1 ? asUtf8(parts.at(1)) : names.instance;
}

// The server knows who has connected; of a window of another machine that is whoever forwards it.
// One that names the same process itself is of this machine, also when the machine's name has
// changed since.
void X11WindowReader::decideProcess() {
    const bool isForeign = hasMachine_ && !isThisMachine_ && claimedProcess_ != serversWord_;
    const bool isClaimGood = isThisMachine_ && claimedProcess_ > 0;
    if (serversWord_ > 0) {
        window_.processIdentifier = isForeign ? 0 : serversWord_;
    } else {
        window_.processIdentifier = isClaimGood ? claimedProcess_ : 0;
    }
}

} // namespace quorvane
