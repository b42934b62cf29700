// Writes numbered device-state rows, one transaction each, and prints the
// number after every commit, until it is killed. With --current FILE it only
// opens FILE as the process's current store and returns, to check a clean exit.
// With --lock FILE CAMERA SECONDS it locks CAMERA for SECONDS, prints "locked"
// and waits to be killed, standing for an operator's client that dies.
#include "site_store/csitestore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: site_store_writer FILE\n");
        return 2;
    }
    if (qstrcmp(argv[1], "--current") == 0 && argc > 2) {
        qputenv(site_store::CSiteStore::kPathEnvVar, argv[2]);
        std::printf("%d\n", int(site_store::CSiteStore::Current()->cameras().size()));
        return 0;
    }
    if (qstrcmp(argv[1], "--lock") == 0 && argc > 4) {
        auto store = site_store::CSiteStore::Open(QString::fromLocal8Bit(argv[2]));
        site_store::LockRecord lock;
        lock.cameraId = QString::fromLocal8Bit(argv[3]);
        lock.holder = QStringLiteral("writer");
        lock.holderLevel = 50;
        lock.expiresAt = QDateTime::currentDateTimeUtc().addSecs(QByteArray(argv[4]).toInt());
        if (store->isFallback() || !store->setLock(lock)) {
            std::fprintf(stderr, "%s\n", qPrintable(store->openError() + store->lastError()));
            return 1;
        }
        std::printf("locked %lld\n", lock.expiresAt.toMSecsSinceEpoch());
        std::fflush(stdout);
        return app.exec();
    }
    auto store = site_store::CSiteStore::Open(QString::fromLocal8Bit(argv[1]));
    if (store->isFallback()) {
        std::fprintf(stderr, "%s\n", qPrintable(store->openError()));
        return 1;
    }
    const QByteArray padding(512, 'x');
    for (int i = 1;; ++i) {
        QJsonObject row{{QStringLiteral("i"), i}, {QStringLiteral("pad"), QString::fromLatin1(padding)}};
        if (!store->setDeviceState(QStringLiteral("crash"), QStringLiteral("row-%1").arg(i, 8, 10, QLatin1Char('0')),
                                   QJsonDocument(row).toJson(QJsonDocument::Compact))) {
            std::fprintf(stderr, "%s\n", qPrintable(store->lastError()));
            return 1;
        }
        std::printf("%d\n", i);
        std::fflush(stdout);
    }
}
