#include "Host/KXLogic/SettingsStore.h"

#include "Host/ktl/LogSettings.h"

#include <mutex>

namespace {

struct Store
{
    std::mutex mutex;
    std::shared_ptr<const KXHost::Settings> pSettings = std::make_shared<const KXHost::Settings>();
};

Store& TheStore()
{
    static Store store;
    return store;
}

} // namespace

namespace KXHost {

void Configure(const Settings& settings)
{
    for (const QString& strPassword : settings.devicePasswords)
        AddSecret(strPassword.toStdString());
    auto pSettings = std::make_shared<const Settings>(settings);
    Store& store = TheStore();
    const std::lock_guard<std::mutex> lock(store.mutex);
    store.pSettings = std::move(pSettings);
}

std::shared_ptr<const Settings> CurrentSettings()
{
    Store& store = TheStore();
    const std::lock_guard<std::mutex> lock(store.mutex);
    return store.pSettings;
}

} // namespace KXHost
