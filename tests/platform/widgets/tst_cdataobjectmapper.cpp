#include "quillon/cdataobjectmapper.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>

using namespace Quillon;

class TestCDataObjectMapper : public QObject
{
    Q_OBJECT

private slots:
    void pageSwitchNeverShowsTwoPages()
    {
        QWidget host;
        auto *a = new QWidget(&host);
        auto *b = new QWidget(&host);
        CDataObjectMapper mapper;
        mapper.AddMapping(a, 0);
        mapper.AddMapping(b, 1);
        host.show();
        QVERIFY(QTest::qWaitForWindowExposed(&host));
        mapper.SetData({{0, true}, {1, false}});

        int bothVisible = 0;
        connect(&mapper, &CDataObjectMapper::SignalDataChanged, this, [&] {
            if (a->isVisible() && b->isVisible())
                ++bothVisible;
        });
        // The role showing b sorts after a's role, yet a must be hidden first.
        mapper.SetData({{0, 0}, {1, 1}});
        QVERIFY(!a->isVisible());
        QVERIFY(b->isVisible());
        mapper.SetData({{0, 1}, {1, 0}});
        QVERIFY(a->isVisible());
        QCOMPARE(bothVisible, 0);
    }
    void otherPropertiesAndLateMappings()
    {
        QLabel first;
        QLabel second;
        CDataObjectMapper mapper;
        mapper.AddMapping(&first, 5, "text");
        QSignalSpy spy(&mapper, &CDataObjectMapper::SignalDataChanged);
        mapper.SetData(5, QStringLiteral("hello"));
        QCOMPARE(first.text(), QStringLiteral("hello"));
        QCOMPARE(spy.count(), 1);
        // Mapped later to a role that has a value: takes it at once.
        mapper.AddMapping(&second, 5, "text");
        QCOMPARE(second.text(), QStringLiteral("hello"));
        QCOMPARE(mapper.GetMappedObjects(5).size(), 2);

        mapper.RemoveMapping(&first);
        mapper.SetData(5, QStringLiteral("bye"));
        QCOMPARE(first.text(), QStringLiteral("hello"));
        QCOMPARE(second.text(), QStringLiteral("bye"));
    }
    void destroyedObjectsAreForgotten()
    {
        CDataObjectMapper mapper;
        auto *label = new QLabel;
        mapper.AddMapping(label, 1, "text");
        delete label;
        mapper.SetData(1, QStringLiteral("no crash"));
        QVERIFY(mapper.GetMappedObjects(1).isEmpty());
    }
};

QTEST_MAIN(TestCDataObjectMapper)
#include "tst_cdataobjectmapper.moc"
