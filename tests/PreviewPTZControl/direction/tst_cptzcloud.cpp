#include "direction/cpathwithstatus.h"
#include "direction/cptzcloud.h"
#include "direction/cptzgraphicsview.h"
#include "vs_ui_data_controller/cvsstylemanager.h"

// Route test mouse input through the window system, so moves, enters and leaves
// reach the widget under the cursor as they would for a user.
#define QTEST_QPA_MOUSE_HANDLING

#include <QFile>
#include <QSignalSpy>
#include <QSvgRenderer>
#include <QtTest>

using PreviewPTZControl::CPathWithStatus;
using PreviewPTZControl::CPTZCloud;
using PreviewPTZControl::CPTZGraphicsView;

Q_DECLARE_METATYPE(QMouseEvent *)

namespace {

enum State { Normal = 0, Hover = 1, Pressed = 2, Checked = 3, Disabled = 4 };

// Pad coordinates (origin at the centre) of a point well inside each section 1-9; others: outside the ring.
QPoint pointIn(int section)
{
    static const QPoint inside[] = { { -45, -45 }, { 0, -50 }, { 45, -45 }, { -50, 0 }, { 0, 0 }, { 50, 0 },
        { -45, 45 }, { 0, 50 }, { 45, 45 } };
    return section >= 1 && section <= 9 ? inside[section - 1] : QPoint(80, 80);
}

} // namespace

class TestCPTZCloud : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qRegisterMetaType<QMouseEvent *>();
        qRegisterMetaType<CPTZCloud::enClickSection>();
    }
    void init()
    {
        m_pad = new CPTZCloud();
        m_pad->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_pad));
        auto *view = m_pad->findChild<CPTZGraphicsView *>(QStringLiteral("ptr_graphics_view"));
        QVERIFY(view);
        QCOMPARE(view->size(), QSize(174, 174));
        m_viewport = view->viewport();
        m_pressSpy = new QSignalSpy(m_pad, &CPTZCloud::signalPressSection);
        m_releaseSpy = new QSignalSpy(m_pad, &CPTZCloud::signalReleaseSection);
    }
    void cleanup()
    {
        delete m_pressSpy;
        delete m_releaseSpy;
        delete m_pad;
        m_pressSpy = m_releaseSpy = nullptr;
        m_pad = nullptr;
    }

    void hitTest_data()
    {
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<QList<int>>("hits");

        for (int s = 1; s <= 9; ++s) {
            QTest::addRow("inside section %d", s) << pointIn(s) << QList<int> { s };
        }
        QTest::newRow("up near the ring edge") << QPoint(-10, -70) << QList<int> { 2 };
        QTest::newRow("down near the centre disc") << QPoint(5, 32) << QList<int> { 8 };
        // The centre is a square: its corners lie outside the centre disc, in the cross.
        QTest::newRow("centre square corner") << QPoint(27, -27) << QList<int> { 5 };
        QTest::newRow("cross inside the centre band") << QPoint(-20, 26) << QList<int> { 5 };
        // The cross between the up and left arms belongs to both rules; the walk takes 2 first.
        QTest::newRow("cross between up and left") << QPoint(-30, -32) << QList<int> { 2, 4 };
        QTest::newRow("diagonal lens near its tip") << QPoint(52, 52) << QList<int> { 9 };
        QTest::newRow("outside the ring, right") << QPoint(78, 0) << QList<int> {};
        QTest::newRow("outside the ring, up") << QPoint(0, -77) << QList<int> {};
        QTest::newRow("pad corner") << QPoint(-86, -86) << QList<int> {};
        QTest::newRow("beyond the diagonal lens") << QPoint(-58, 58) << QList<int> {};
    }
    void hitTest()
    {
        QFETCH(QPoint, point);
        QFETCH(QList<int>, hits);

        QList<int> actual;
        for (int s = 1; s <= 9; ++s) {
            if (m_pad->hitSection(point, s)) {
                actual << s;
            }
        }
        QCOMPARE(actual, hits);
        QCOMPARE(m_pad->sectionAt(point), hits.isEmpty() ? -1 : hits.first());
        QVERIFY(!m_pad->hitSection(point, -1));
        QVERIFY(!m_pad->hitSection(point, 0));

        // With the centre out of the way, the cross near the middle belongs to no arrow.
        m_pad->SetSectionsEnabled({ 5 }, false);
        const bool nearMiddle = qAbs(point.x()) < 29 && qAbs(point.y()) < 29;
        if (nearMiddle) {
            QCOMPARE(m_pad->sectionAt(point), -1);
        }
    }
    void arrowRuleBoundaries_data()
    {
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<int>("section");
        QTest::addColumn<bool>("hit");
        // Points of the cross just at and just inside 29 from the centre on one axis.
        QTest::newRow("left at -29") << QPoint(-29, 12) << 4 << true;
        QTest::newRow("left at -28") << QPoint(-28, 12) << 4 << false;
        QTest::newRow("up at -29") << QPoint(12, -29) << 2 << true;
        QTest::newRow("up at -28") << QPoint(12, -28) << 2 << false;
        QTest::newRow("right at 29") << QPoint(29, 12) << 6 << true;
        QTest::newRow("right at 28") << QPoint(28, 12) << 6 << false;
        QTest::newRow("down at 29") << QPoint(12, 29) << 8 << true;
        QTest::newRow("down at 28") << QPoint(12, 28) << 8 << false;
    }
    void arrowRuleBoundaries()
    {
        QFETCH(QPoint, point);
        QFETCH(int, section);
        QFETCH(bool, hit);
        QVERIFY(m_pad->crossSection()->path.contains(point));
        QCOMPARE(m_pad->hitSection(point, section), hit);
    }

    void releaseOnPressedArrow()
    {
        press(2);
        QCOMPARE(m_pressSpy->count(), 1);
        QCOMPARE(m_pressSpy->at(0).at(1).value<CPTZCloud::enClickSection>(), CPTZCloud::TopMiddle);
        QVERIFY(m_pressSpy->at(0).at(0).value<QMouseEvent *>() != nullptr);
        QCOMPARE(m_pad->sectionStatus(2), int(Pressed));
        QCOMPARE(m_pad->pressedSection(), 2);
        QCOMPARE(m_releaseSpy->count(), 0);

        release(2);
        QCOMPARE(m_releaseSpy->count(), 1);
        QCOMPARE(m_releaseSpy->at(0).at(1).value<CPTZCloud::enClickSection>(), CPTZCloud::TopMiddle);
        QCOMPARE(m_pad->sectionStatus(2), int(Hover));
        // The stored arrow is kept when the release lands on a section.
        QCOMPARE(m_pad->pressedSection(), 2);
        QCOMPARE(m_pressSpy->count(), 1);
    }
    void dragOffThePadStopsThePressedArrow()
    {
        press(6);
        QTest::mouseMove(m_viewport, viewportPoint(QPoint(84, 84)));
        QCOMPARE(m_pad->sectionStatus(6), int(Pressed));
        QTest::mouseRelease(m_viewport, Qt::LeftButton, Qt::NoModifier, viewportPoint(QPoint(84, 84)));

        QCOMPARE(m_releaseSpy->count(), 1);
        QCOMPARE(m_releaseSpy->at(0).at(1).value<CPTZCloud::enClickSection>(), CPTZCloud::MiddleRight);
        QCOMPARE(m_pad->pressedSection(), -1);
        QCOMPARE(m_pad->sectionStatus(6), int(Normal));

        // A second stray release has nothing left to stop.
        QTest::mouseRelease(m_viewport, Qt::LeftButton, Qt::NoModifier, viewportPoint(QPoint(84, 84)));
        QCOMPARE(m_releaseSpy->count(), 1);
    }
    void releaseOnAnotherArrowNamesThatArrow()
    {
        press(2);
        release(9);
        QCOMPARE(m_releaseSpy->count(), 1);
        QCOMPARE(m_releaseSpy->at(0).at(1).value<CPTZCloud::enClickSection>(), CPTZCloud::BottomRight);
        QCOMPARE(m_pad->sectionStatus(2), int(Normal));
        QCOMPARE(m_pad->sectionStatus(9), int(Hover));
    }
    void otherButtonsAreIgnored_data()
    {
        QTest::addColumn<int>("buttonValue");
        QTest::newRow("right") << int(Qt::RightButton);
        QTest::newRow("middle") << int(Qt::MiddleButton);
    }
    void otherButtonsAreIgnored()
    {
        QFETCH(int, buttonValue);
        const auto button = static_cast<Qt::MouseButton>(buttonValue);
        press(4, button);
        release(4, button);
        press(5, button);
        QCOMPARE(m_pressSpy->count(), 0);
        QCOMPARE(m_releaseSpy->count(), 0);
        // The cursor hovers the centre; no other button presses or checks anything.
        QCOMPARE(m_pad->sectionStatus(4), int(Normal));
        QCOMPARE(m_pad->sectionStatus(5), int(Hover));
        QCOMPARE(m_pad->pressedSection(), -1);

        // A left press followed by another button's release keeps the arrow running.
        press(4);
        QTest::mouseRelease(m_viewport, button, Qt::NoModifier, viewportPoint(QPoint(84, 84)));
        QCOMPARE(m_releaseSpy->count(), 0);
        QCOMPARE(m_pad->sectionStatus(4), int(Pressed));
    }
    void disabledSectionNeverReacts()
    {
        m_pad->SetSectionsEnabled({ 2, 5 }, false);
        for (int s : { 2, 5 }) {
            moveTo(s);
            press(s);
            release(s);
            QCOMPARE(m_pad->sectionStatus(s), int(Disabled));
        }
        QTest::mouseMove(m_viewport, viewportPoint(QPoint(84, 84)));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(m_viewport, &leave);
        QCOMPARE(m_pad->sectionStatus(2), int(Disabled));
        QCOMPARE(m_pressSpy->count(), 0);
        QCOMPARE(m_releaseSpy->count(), 0);
        QVERIFY(CPTZCloud::sectionImage(2, Disabled).endsWith(QLatin1String("ptz_control_panel_arrows_dis.svg")));

        // Its neighbours still work.
        press(8);
        QCOMPARE(m_pressSpy->count(), 1);
    }
    void disabledPadIgnoresMouse()
    {
        m_pad->setEnabled(false);
        moveTo(2);
        press(2);
        release(2);
        press(5);
        QCOMPARE(m_pressSpy->count(), 0);
        QCOMPARE(m_releaseSpy->count(), 0);
        QCOMPARE(m_pad->sectionStatus(2), int(Normal));
        QCOMPARE(m_pad->sectionStatus(5), int(Normal));
    }
    void centreToggles()
    {
        press(5);
        QCOMPARE(m_pressSpy->count(), 1);
        QCOMPARE(m_pressSpy->at(0).at(1).value<CPTZCloud::enClickSection>(), CPTZCloud::Center);
        QCOMPARE(m_pad->sectionStatus(5), int(Checked));
        QCOMPARE(m_pad->pressedSection(), 5);

        // Releasing a checked centre is not a release of auto-scan.
        release(5);
        QCOMPARE(m_releaseSpy->count(), 0);
        QCOMPARE(m_pad->sectionStatus(5), int(Checked));

        press(5);
        QCOMPARE(m_releaseSpy->count(), 1);
        QCOMPARE(m_releaseSpy->at(0).at(1).value<CPTZCloud::enClickSection>(), CPTZCloud::Center);
        QCOMPARE(m_pad->sectionStatus(5), int(Normal));
        QCOMPARE(m_pad->pressedSection(), -1);

        release(5);
        QCOMPARE(m_releaseSpy->count(), 1);
        QCOMPARE(m_pad->sectionStatus(5), int(Hover));
        QCOMPARE(m_pressSpy->count(), 1);
    }
    void hoverFreezesWhileArrowHeld()
    {
        moveTo(8);
        QCOMPARE(m_pad->sectionStatus(8), int(Hover));
        moveTo(4);
        QCOMPARE(m_pad->sectionStatus(8), int(Normal));
        QCOMPARE(m_pad->sectionStatus(4), int(Hover));

        press(4);
        moveTo(8);
        QCOMPARE(m_pad->sectionStatus(4), int(Pressed));
        QCOMPARE(m_pad->sectionStatus(8), int(Normal));

        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(m_viewport, &leave);
        QCOMPARE(m_pad->sectionStatus(4), int(Normal));
    }
    void enterHoversTheSectionUnderTheCursor()
    {
        const QPoint local = viewportPoint(pointIn(7));
        QEnterEvent enter(local, local, m_viewport->mapToGlobal(local));
        QApplication::sendEvent(m_viewport, &enter);
        QCOMPARE(m_pad->sectionStatus(7), int(Hover));
        QCOMPARE(m_pad->toolTip(), QStringLiteral("LowerLeft"));

        // Entering again elsewhere while a section still shows hover stops at that section.
        const QPoint other = viewportPoint(pointIn(9));
        QEnterEvent again(other, other, m_viewport->mapToGlobal(other));
        QApplication::sendEvent(m_viewport, &again);
        QCOMPARE(m_pad->sectionStatus(7), int(Hover));
        QCOMPARE(m_pad->sectionStatus(9), int(Normal));
    }

    void toolTipFollowsHover_data()
    {
        QTest::addColumn<int>("section");
        QTest::addColumn<QString>("key");
        QTest::newRow("1") << 1 << "UpperLeft";
        QTest::newRow("2") << 2 << "TurnUp";
        QTest::newRow("3") << 3 << "UpperRight";
        QTest::newRow("4") << 4 << "TurningToTheLeft";
        QTest::newRow("5") << 5 << "StartAuto-Scanning";
        QTest::newRow("6") << 6 << "ToTheRightTurn";
        QTest::newRow("7") << 7 << "LowerLeft";
        QTest::newRow("8") << 8 << "TurnDown";
        QTest::newRow("9") << 9 << "LowerRight";
    }
    void toolTipFollowsHover()
    {
        QFETCH(int, section);
        QFETCH(QString, key);
        moveTo(section);
        QCOMPARE(m_pad->tipSection(), section);
        QCOMPARE(m_pad->toolTip(), key);

        QTest::mouseMove(m_viewport, viewportPoint(QPoint(84, -84)));
        QCOMPARE(m_pad->tipSection(), -1);
        QCOMPARE(m_pad->toolTip(), QString());
    }
    void centreToolTipFollowsCheckedStateOnNextHoverChange()
    {
        moveTo(5);
        QCOMPARE(m_pad->toolTip(), QStringLiteral("StartAuto-Scanning"));
        press(5);
        release(5);
        moveTo(5);
        // Same section under the cursor: the tip is left alone.
        QCOMPARE(m_pad->toolTip(), QStringLiteral("StartAuto-Scanning"));
        moveTo(6);
        moveTo(5);
        QCOMPARE(m_pad->sectionStatus(5), int(Checked));
        QCOMPARE(m_pad->toolTip(), QStringLiteral("StopAuto-Scanning"));

        press(5);
        moveTo(2);
        moveTo(5);
        QCOMPARE(m_pad->toolTip(), QStringLiteral("StartAuto-Scanning"));
    }
    void unchangedSectionKeepsToolTip()
    {
        moveTo(3);
        m_pad->setToolTip(QStringLiteral("set elsewhere"));
        QTest::mouseMove(m_viewport, viewportPoint(pointIn(3) + QPoint(2, 2)));
        QCOMPARE(m_pad->toolTip(), QStringLiteral("set elsewhere"));
    }

    void setSectionsEnabled()
    {
        m_pad->SetSectionsEnabled({ 1, 3, 6, 4, 7, 9 }, false);
        for (int s = 1; s <= 9; ++s) {
            const bool off = (s != 2 && s != 5 && s != 8);
            QCOMPARE(m_pad->sectionStatus(s), off ? int(Disabled) : int(Normal));
        }
        // An empty list changes nothing, whatever the flag.
        m_pad->SetSectionsEnabled({}, true);
        QCOMPARE(m_pad->sectionStatus(6), int(Disabled));
        // Unknown numbers are skipped.
        m_pad->SetSectionsEnabled({ -1, 0, 10, 6 }, true);
        QCOMPARE(m_pad->sectionStatus(6), int(Normal));
        QCOMPARE(m_pad->sectionStatus(4), int(Disabled));

        // Enabling resets to normal, even a checked centre.
        m_pad->SetSectionChecked(5, true);
        m_pad->SetSectionsEnabled({ 5 }, true);
        QCOMPARE(m_pad->sectionStatus(5), int(Normal));
    }
    void setSectionChecked()
    {
        m_pad->SetSectionChecked(5, true);
        QCOMPARE(m_pad->sectionStatus(5), int(Checked));
        // The panel's checked centre behaves as if pressed by the user: the next press stops it.
        press(5);
        QCOMPARE(m_releaseSpy->count(), 1);
        QCOMPARE(m_pressSpy->count(), 0);
        m_pad->SetSectionChecked(5, true);
        m_pad->SetSectionChecked(5, false);
        QCOMPARE(m_pad->sectionStatus(5), int(Normal));
        m_pad->SetSectionChecked(42, true);
        QCOMPARE(m_pad->sectionStatus(42), -1);
    }

    void padImagesExist_data()
    {
        QTest::addColumn<QString>("path");
        QCOMPARE(CPTZCloud::backgroundImage(), QStringLiteral(":/Images/PTZ/Direction/ptz_control_panel_bg.svg"));
        QCOMPARE(
            CPTZCloud::backgroundImage(true), QStringLiteral(":/Images/PTZWhite/Direction/ptz_control_panel_bg.svg"));
        QTest::newRow("background") << CPTZCloud::backgroundImage();
        for (int s = 1; s <= 9; ++s) {
            for (int state = Normal; state <= Disabled; ++state) {
                const QString path = CPTZCloud::sectionImage(s, state);
                if (state == Checked && s != 5) {
                    QVERIFY2(path.isEmpty(), qPrintable(path));
                    continue;
                }
                QString white = path;
                white.replace(QLatin1String(":/Images/PTZ/"), QLatin1String(":/Images/PTZWhite/"));
                QCOMPARE(CPTZCloud::sectionImage(s, state, true), white);
                QTest::addRow("section %d state %d", s, state) << path;
            }
        }
    }
    void padImagesExist()
    {
        QFETCH(QString, path);
        QVERIFY(path.startsWith(QLatin1String(":/Images/PTZ/Direction/")));
        QVERIFY2(QFile::exists(path), qPrintable(path));
        QVERIFY2(QSvgRenderer(path).isValid(), qPrintable(path));
        QString white = path;
        white.replace(QLatin1String(":/Images/PTZ/"), QLatin1String(":/Images/PTZWhite/"));
        QVERIFY2(QSvgRenderer(white).isValid(), qPrintable(white));
    }
    void paintedImageFollowsStateAndRotation()
    {
        // Middle of the up arrow's triangle.
        const QPoint upArrow(0, -50);
        const QColor normal = pixelAt(upArrow);
        QVERIFY2(qAbs(normal.red() - normal.blue()) < 30 && qGray(normal.rgb()) > 150, qPrintable(normal.name()));
        press(2);
        const QColor pressed = pixelAt(upArrow);
        QVERIFY2(pressed.blue() > pressed.red() + 80, qPrintable(pressed.name()));
        release(2);
        m_pad->SetSectionsEnabled({ 2 }, false);
        QVERIFY2(qGray(pixelAt(upArrow).rgb()) < qGray(normal.rgb()) - 50, qPrintable(pixelAt(upArrow).name()));

        // The left arrow is turned a quarter anticlockwise: its base is on the right.
        const QColor nearBase = pixelAt(QPoint(-62 + 14, -12 + 8));
        const QColor nearTipSide = pixelAt(QPoint(-62 + 9, -12 + 6));
        QVERIFY2(qGray(nearBase.rgb()) > 150, qPrintable(nearBase.name()));
        QVERIFY2(qGray(nearTipSide.rgb()) < 100, qPrintable(nearTipSide.name()));

        // In the host's white theme the pad draws its dark-on-light images.
        auto *style = vs_ui_data_controller::CVSStyleManager::Instance();
        style->SetTheme(vs_ui_data_controller::CVSStyleManager::WhiteTheme);
        const QColor whiteArrow = pixelAt(QPoint(0, 50));
        const QColor whiteRing = pixelAt(QPoint(-40, 0));
        style->SetTheme(vs_ui_data_controller::CVSStyleManager::DarkTheme);
        QVERIFY2(qGray(whiteArrow.rgb()) < 100, qPrintable(whiteArrow.name()));
        QVERIFY2(qGray(whiteRing.rgb()) > 180, qPrintable(whiteRing.name()));
    }

private:
    QPoint viewportPoint(const QPoint &pad) const { return pad + QPoint(87, 87); }
    void press(int section, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(m_viewport, button, Qt::NoModifier, viewportPoint(pointIn(section)));
    }
    void release(int section, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(m_viewport, button, Qt::NoModifier, viewportPoint(pointIn(section)));
    }
    void moveTo(int section) { QTest::mouseMove(m_viewport, viewportPoint(pointIn(section))); }
    QColor pixelAt(const QPoint &pad)
    {
        m_pad->update();
        const QImage image = m_pad->grab().toImage();
        return image.pixelColor(viewportPoint(pad) * image.devicePixelRatio());
    }

    CPTZCloud *m_pad = nullptr;
    QWidget *m_viewport = nullptr;
    QSignalSpy *m_pressSpy = nullptr;
    QSignalSpy *m_releaseSpy = nullptr;
};

QTEST_MAIN(TestCPTZCloud)
#include "tst_cptzcloud.moc"
