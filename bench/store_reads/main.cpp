// Cost of the reads a bound panel makes on every press, answered from the store's memory: in memory,
// and on a file, where each one first asks SQLite whether another client committed.
#include "site_store/csitestore.h"
#include "site_store/demosite.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// Median microseconds of one press's reads: camera, user, permission, lock switch, lock.
double pressReads(site_store::CSiteStore &store)
{
    using site_store::CSiteStore;
    const QString camera = QString::fromLatin1(site_store::demo::kSpeedDome);
    const QString user = QString::fromLatin1(site_store::demo::kOperator);
    std::vector<double> runs;
    for (int i = 0; i < 2001; ++i) {
        QElapsedTimer timer;
        timer.start();
        bool any = store.camera(camera).has_value() && store.user(user).has_value();
        any = any && store.hasPermission(user, camera, CSiteStore::kPermPtzControl);
        any = any && store.boolSetting(CSiteStore::kIsSupportPTZLock) && !store.lock(camera);
        runs.push_back(timer.nsecsElapsed() / 1000.0);
        if (!any)
            std::fprintf(stderr, "unexpected demo site\n");
    }
    std::nth_element(runs.begin(), runs.begin() + runs.size() / 2, runs.end());
    return runs[runs.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    {
        auto memory = site_store::CSiteStore::OpenInMemory();
        std::printf("press reads, in-memory store: median %.1f us (5 reads, 2001 presses)\n", pressReads(*memory));
        auto file = site_store::CSiteStore::Open(dir.filePath(QStringLiteral("site.sqlite")));
        std::printf("press reads, store file:      median %.1f us (5 reads, 2001 presses)\n", pressReads(*file));
    }
    return 0;
}
