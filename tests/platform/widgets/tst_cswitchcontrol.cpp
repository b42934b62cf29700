#include "quillon/cswitchcontrol.h"

#include <QSignalSpy>
#include <QTest>

using namespace Quillon;

class TestCSwitchControl : public QObject
{
    Q_OBJECT

private slots:
    void clickTogglesAndReports()
    {
        CSwitchControl sw;
        sw.resize(sw.sizeHint());
        sw.show();
        QVERIFY(QTest::qWaitForWindowExposed(&sw));
        QSignalSpy spy(&sw, &QAbstractButton::toggled);
        QTest::mouseClick(&sw, Qt::LeftButton);
        QVERIFY(sw.IsToggled());
        QTest::mouseClick(&sw, Qt::LeftButton);
        QVERIFY(!sw.IsToggled());
        QTest::keyClick(&sw, Qt::Key_Space);
        QVERIFY(sw.IsToggled());
        QCOMPARE(spy.count(), 3);

        sw.setEnabled(false);
        QTest::mouseClick(&sw, Qt::LeftButton);
        QVERIFY(sw.IsToggled());
        QCOMPARE(spy.count(), 3);
    }
    void setToggleReportsOnlyChanges_data()
    {
        QTest::addColumn<bool>("initial");
        QTest::addColumn<bool>("wanted");
        QTest::addColumn<int>("emitted");
        QTest::newRow("off to on") << false << true << 1;
        QTest::newRow("on stays on") << true << true << 0;
    }
    void setToggleReportsOnlyChanges()
    {
        QFETCH(bool, initial);
        QFETCH(bool, wanted);
        QFETCH(int, emitted);
        CSwitchControl sw;
        sw.SetToggle(initial);
        QSignalSpy spy(&sw, &QAbstractButton::toggled);
        sw.SetToggle(wanted);
        QCOMPARE(sw.IsToggled(), wanted);
        QCOMPARE(spy.count(), emitted);
    }
    void paintsTrackInStateColour()
    {
        CSwitchControl sw;
        sw.SetCheckedColor(QColor(0, 200, 0));
        sw.SetUncheckedColor(QColor(200, 0, 0));
        sw.resize(40, 20);
        // The knob covers the left end when off and the right end when on; the
        // other end shows the track in the state's colour.
        const QPoint leftEnd(6, 10);
        const QPoint rightEnd(34, 10);
        const auto at = [](const QImage &img, const QPoint &p) {
            return QColor(img.pixel(p * img.devicePixelRatio()));
        };
        const QImage off = sw.grab().toImage();
        QCOMPARE(at(off, rightEnd), QColor(200, 0, 0));
        QCOMPARE(at(off, leftEnd), QColor(Qt::white));
        sw.SetToggle(true); // hidden: the knob jumps, no animation to wait for
        const QImage on = sw.grab().toImage();
        QCOMPARE(at(on, leftEnd), QColor(0, 200, 0));
        QCOMPARE(at(on, rightEnd), QColor(Qt::white));
    }
};

QTEST_MAIN(TestCSwitchControl)
#include "tst_cswitchcontrol.moc"
