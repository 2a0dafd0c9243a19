#pragma once

#include "platform/Alerts.h"
#include "platform/Updater.h"
#include "platform/UserDefaultsStore.h"
#include "platform/qt/AlertDialog.h"
#include "platform/qt/update/Appcast.h"
#include "platform/qt/update/FeedDownload.h"

namespace tallowbay::qt {

// Asks an update feed for the newest version and shows what it says. The feed's address is the
// preference updateFeedURL, else what the program was built with.
class AppcastUpdater final : public Updater {
public:
    struct Setup {
        std::string ourVersion;
        std::string builtInFeed; // may be empty
        DownloadLimits limits;
        std::function<void(const QUrl&)> openLink; // in the user's browser
    };
    AppcastUpdater(UserDefaultsStore&, Setup);
    ~AppcastUpdater() override;

    void checkForUpdates() override;

private:
    std::string feedAddress() const;
    void judge(const DownloadResult&);
    void show(const Alert&, const QUrl& link = {});

    UserDefaultsStore& defaults;
    const Setup setup;
    std::unique_ptr<FeedDownload> download; // while a check is under way
    std::unique_ptr<AlertDialog> dialog; // the last result
};

} // namespace tallowbay::qt
