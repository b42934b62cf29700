#include "quillon/cdataobjectmapper.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>

using namespace Quillon;

class TestCDataObjectMapper : public QObject
{
    Q_OBJECT

private slots:
    void pageSwitch_data()
    {
        QTest::addColumn<int>("page");
        QTest::newRow("first") << 0;
        QTest::newRow("second") << 1;
        QTest::newRow("third") << 2;
    }
    void pageSwitch()
    {
        QFETCH(int, page);
        QWidget host;
        QWidget *pages[3] = {new QWidget(&host), new QWidget(&host), new QWidget(&host)};
        CDataObjectMapper mapper;
        for (int i = 0; i < 3; ++i)
            mapper.AddMapping(pages[i], 1257 + i);
        host.show();
        QVERIFY(QTest::qWaitForWindowExposed(&host));

        QMap<int, QVariant> values;
        for (int i = 0; i < 3; ++i)
            values.insert(1257 + i, i == page);
        mapper.SetData(values);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(pages[i]->isVisible(), i == page);
            QCOMPARE(mapper.GetData(1257 + i).toBool(), i == page);
        }
    }
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
