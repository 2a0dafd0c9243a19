#include "platform/qt/update/AppcastUpdater.h"

namespace tallowbay::qt {

namespace {

Alert notSetUp()
{
    return {
        "Updates are not set up",
        "This Tallowbay does not know where to look for new versions. Whoever packaged it brings "
        "them to you, or you can name an update feed in the preference \"updateFeedURL\".",
        {"OK"}};
}

Alert cannotReach(const std::string& reason)
{
    return {"Tallowbay could not look for updates", reason + "\n\nPlease try again later.", {"OK"}};
}

Alert notUnderstood()
{
    return cannotReach("The update feed's answer could not be understood.");
}

Alert upToDate(const std::string& ourVersion)
{
    return {
        "Tallowbay is up to date", "Version " + ourVersion + " is the newest there is.", {"OK"}};
}

Alert available(const AppcastItem& update, const std::string& ourVersion)
{
    const std::vector<std::string> buttons = update.link.isEmpty()
        ? std::vector<std::string>{"OK"}
        : std::vector<std::string>{"Open Download Page", "Later"};
    return {
        "Tallowbay " + update.version + " is available", "You have version " + ourVersion + ".",
        buttons};
}

} // namespace

AppcastUpdater::AppcastUpdater(UserDefaultsStore& defaults, Setup setup)
    : defaults(defaults)
    , setup(std::move(setup))
{
}

AppcastUpdater::~AppcastUpdater() = default;

void AppcastUpdater::checkForUpdates()
{
    if (download)
        return;
    const std::string address = feedAddress();
    if (address.empty()) {
        show(notSetUp());
        return;
    }
    download = std::make_unique<FeedDownload>(
        QUrl(QString::fromStdString(address)), setup.limits,
        [this](const DownloadResult& result) { judge(result); });
}

std::string AppcastUpdater::feedAddress() const
{
    return stringValue(defaults.standard(), preference::updateFeedURL).value_or(setup.builtInFeed);
}

void AppcastUpdater::judge(const DownloadResult& result)
{
    const auto ended = std::move(download); // the result is a part of it
    if (const auto* failure = std::get_if<DownloadFailure>(&result)) {
        show(cannotReach(failure->reason));
        return;
    }
    const auto items = parseAppcast(std::get<QByteArray>(result));
    const auto update = items ? newestUpdate(*items, setup.ourVersion) : std::nullopt;
    if (update)
        show(available(*update, setup.ourVersion), update->link);
    else
        show(items ? upToDate(setup.ourVersion) : notUnderstood());
}

void AppcastUpdater::show(const Alert& alert, const QUrl& link)
{
    dialog = std::make_unique<AlertDialog>(AlertDialog::Kind::news, alert);
    QObject::connect(dialog.get(), &QDialog::accepted, dialog.get(), [this, link] {
        if (dialog->answer() == 0 && !link.isEmpty())
            setup.openLink(link);
    });
    dialog->present();
}

} // namespace tallowbay::qt
