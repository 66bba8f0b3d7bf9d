#include "apps/helper/KernelAttributes.h"

#include <QDir>
#include <QFile>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

class OwnedDescriptor {
  public:
    explicit OwnedDescriptor(int descriptor) : descriptor_(descriptor) {}

    ~OwnedDescriptor() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }

    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;

    [[nodiscard]] int get() const { return descriptor_; }

    [[nodiscard]] bool isRegularFile() const {
        struct stat status {};

        return descriptor_ >= 0 && ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
    }

  private:
    int descriptor_;
};

} // namespace

KernelAttributes::KernelAttributes(QString root) : root_(std::move(root)) {}

int KernelAttributes::open(const QString& attribute, int flags) const {
    const QString path = root_ + QLatin1Char('/') + attribute;
    return ::open(QFile::encodeName(path).constData(),
                  flags | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
}

std::optional<QString> KernelAttributes::read(const QString& attribute) const {
    constexpr std::size_t limit = 256;
    const OwnedDescriptor file(open(attribute, O_RDONLY));
    std::array<char, limit> text{};
    if (!file.isRegularFile()) {
        return std::nullopt;
    }
    const ssize_t length = ::read(file.get(), text.data(), text.size());
    if (length <= 0) {
        return std::nullopt;
    }
    return QString::fromLatin1(text.data(), length).trimmed();
}

std::optional<QString> KernelAttributes::write(const QString& attribute,
                                               const QString& value) const {
    // The kernel ignores O_TRUNC here; a file of a test would keep the end of a longer value.
    const OwnedDescriptor file(open(attribute, O_WRONLY | O_TRUNC));
    if (!file.isRegularFile()) {
        return qt_error_string(file.get() < 0 ? errno : EINVAL);
    }
    const QByteArray line = value.toLatin1() + '\n';
    if (::write(file.get(), line.constData(), static_cast<std::size_t>(line.size())) !=
        line.size()) {
        return qt_error_string(errno);
    }
    // Some drivers take a value and keep their own.
    const std::optional<QString> now = read(attribute);
    if (now != value) {
        return QStringLiteral("the kernel keeps \"%1\"").arg(now.value_or(QString()));
    }
    return std::nullopt;
}

QStringList KernelAttributes::names(const QString& folder, const QString& prefix) const {
    return QDir(root_ + QLatin1Char('/') + folder)
        .entryList({prefix + QLatin1Char('*')}, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace quorvane
