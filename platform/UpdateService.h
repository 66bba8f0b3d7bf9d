#pragma once

#include <QString>

#include <functional>

namespace quorvane {

/// What is known of a newer version of this program.
struct UpdateStatus {
    enum class Kind {
        UpToDate,
        Available,   ///< `text` is the newer version
        Downloaded,  ///< the same, and it lies ready for the system to install
        NoService,   ///< nothing here can tell: the distribution's own tools deliver updates
        NotPackaged, ///< this copy of the program belongs to no package
        Metered,     ///< not asked, because the connection costs money
        Failed,      ///< `text` says why, in the service's own words
    };

    Kind kind = Kind::NoService;
    QString text;
};

/// The system's delivery of new versions of this program. Main thread only.
class UpdateService {
  public:
    enum class Download { No, Yes };

    virtual ~UpdateService() = default;

    /// Looks for a newer version of this program's own package, and of nothing else; with
    /// `Download::Yes` a newer one is fetched, not installed. Tells `done` later, once, never
    /// before this returns; a question that is under way answers both.
    virtual void look(Download download, std::function<void(const UpdateStatus&)> done) = 0;
};

} // namespace quorvane
