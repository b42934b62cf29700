#include "direction/cpathwithstatus.h"
#include "direction/cptzcloud.h"
#include "direction/cptzgraphicsview.h"
#include "vs_ui_data_controller/cvsstylemanager.h"

// Route test mouse input through the window system, so moves, enters and leaves
// reach the widget under the cursor as they would for a user.
#define QTEST_QPA_MOUSE_HANDLING

#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QSignalSpy>
#include <QSvgRenderer>
#include <QtTest>

using PreviewPTZControl::CPTZCloud;
using PreviewPTZControl::CPTZGraphicsView;

Q_DECLARE_METATYPE(QMouseEvent *)

namespace {

enum State { Normal = 0, Hover = 1, Pressed = 2, Checked = 3, Disabled = 4 };

// Pad coordinates (origin at the centre) of a point well inside each section 1-9; others: outside the ring.
QPoint pointIn(int section)
{
    static const QPoint inside[] = {{-45, -45}, {0, -50},  {45, -45}, {-50, 0}, {0, 0},
                                    {50, 0},    {-45, 45}, {0, 50},   {45, 45}};
    return section >= 1 && section <= 9 ? inside[section - 1] : QPoint(84, 84);
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
    }

    void hitTest_data()
    {
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<QList<int>>("hits");

        for (int s = 1; s <= 9; ++s)
            QTest::addRow("inside section %d", s) << pointIn(s) << QList<int>{s};
        QTest::newRow("up near the ring edge") << QPoint(-10, -70) << QList<int>{2};
        // The centre is a square: its corners lie outside the centre disc, in the cross.
        QTest::newRow("centre square corner") << QPoint(27, -27) << QList<int>{5};
        QTest::newRow("cross inside the centre band") << QPoint(-20, 26) << QList<int>{5};
        // The cross between the up and left arms belongs to both rules; the walk takes 2 first.
        QTest::newRow("cross between up and left") << QPoint(-30, -32) << QList<int>{2, 4};
        QTest::newRow("diagonal lens near its tip") << QPoint(52, 52) << QList<int>{9};
        QTest::newRow("outside the ring") << QPoint(78, 0) << QList<int>{};
        QTest::newRow("pad corner") << QPoint(-86, -86) << QList<int>{};
        QTest::newRow("beyond the diagonal lens") << QPoint(-58, 58) << QList<int>{};
    }
    void hitTest()
    {
        QFETCH(QPoint, point);
        QFETCH(QList<int>, hits);

        QList<int> actual;
        for (int s = -1; s <= 9; ++s) {
            if (m_pad->hitSection(point, s))
                actual << s;
        }
        QCOMPARE(actual, hits);
        QCOMPARE(m_pad->sectionAt(point), hits.isEmpty() ? -1 : hits.first());
        // With the centre out of the way, the cross near the middle belongs to no arrow.
        m_pad->SetSectionsEnabled({5}, false);
        if (qAbs(point.x()) < 29 && qAbs(point.y()) < 29)
            QCOMPARE(m_pad->sectionAt(point), -1);
    }
    void arrowRuleBoundaries_data()
    {
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<int>("section");
        QTest::addColumn<bool>("hit");
        // Points of the cross at and just inside 29 from the centre on one axis.
        const struct
        {
            int section;
            QPoint direction;
        } arms[] = {{4, {-1, 0}}, {2, {0, -1}}, {6, {1, 0}}, {8, {0, 1}}};
        for (const auto &arm : arms) {
            const QPoint across(qAbs(arm.direction.y()) * 12, qAbs(arm.direction.x()) * 12);
            QTest::addRow("%d at 29", arm.section) << arm.direction * 29 + across << arm.section << true;
            QTest::addRow("%d at 28", arm.section) << arm.direction * 28 + across << arm.section << false;
        }
    }
    void arrowRuleBoundaries()
    {
        QFETCH(QPoint, point);
        QFETCH(int, section);
        QFETCH(bool, hit);
        QVERIFY(m_pad->crossSection()->path.contains(point));
        QCOMPARE(m_pad->hitSection(point, section), hit);
    }

    void disabledOrOtherButtonNeverReacts_data()
    {
        QTest::addColumn<int>("buttonValue");
        QTest::addColumn<QString>("off"); // "sections" 2 and 5, the whole "pad", or nothing
        QTest::newRow("right button") << int(Qt::RightButton) << QString();
        QTest::newRow("sections disabled") << int(Qt::LeftButton) << "sections";
        QTest::newRow("pad disabled") << int(Qt::LeftButton) << "pad";
    }
    void disabledOrOtherButtonNeverReacts()
    {
        QFETCH(int, buttonValue);
        const auto button = Qt::MouseButton(buttonValue);
        QFETCH(QString, off);
        const bool sections = off == QLatin1String("sections");
        const bool pad = off == QLatin1String("pad");
        m_pad->setEnabled(!pad);
        if (sections)
            m_pad->SetSectionsEnabled({2, 5}, false);
        for (int s : {2, 5}) {
            moveTo(s);
            press(s, button);
            release(s, button);
        }
        QCOMPARE(m_pressSpy->count(), 0);
        QCOMPARE(m_releaseSpy->count(), 0);
        QCOMPARE(m_pad->pressedSection(), -1);
        // The cursor stays over the centre; no other button presses or checks anything.
        QCOMPARE(m_pad->sectionStatus(5), sections ? int(Disabled) : pad ? int(Normal) : int(Hover));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(m_viewport, &leave);
        QCOMPARE(m_pad->sectionStatus(2), sections ? int(Disabled) : int(Normal));

        // The neighbours still work; another button's release keeps a left-pressed arrow running.
        press(4);
        QCOMPARE(m_pressSpy->count(), pad ? 0 : 1);
        release(0, button);
        QCOMPARE(m_releaseSpy->count(), button == Qt::LeftButton && !pad ? 1 : 0);
    }
    void hoverAndToolTipFollowTheCursor()
    {
        const QStringList keys{"UpperLeft",      "TurnUp",    "UpperRight", "TurningToTheLeft", "StartAuto-Scanning",
                               "ToTheRightTurn", "LowerLeft", "TurnDown",   "LowerRight"};
        for (int section = 1; section <= 9; ++section) {
            moveTo(section);
            QCOMPARE(m_pad->sectionStatus(section), int(Hover));
            QCOMPARE(m_pad->sectionStatus(section == 1 ? 9 : section - 1), int(Normal));
            QCOMPARE(m_pad->tipSection(), section);
            QCOMPARE(m_pad->toolTip(), keys.at(section - 1));
        }
        moveTo(0);
        QCOMPARE(m_pad->tipSection(), -1);
        QCOMPARE(m_pad->toolTip(), QString());

        // Hover freezes while an arrow is held; leaving drops the pressed look, entering hovers.
        press(4);
        moveTo(8);
        QCOMPARE(m_pad->sectionStatus(4), int(Pressed));
        QCOMPARE(m_pad->sectionStatus(8), int(Normal));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(m_viewport, &leave);
        QCOMPARE(m_pad->sectionStatus(4), int(Normal));
        const QPoint local = viewportPoint(pointIn(7));
        QEnterEvent enter(local, local, m_viewport->mapToGlobal(local));
        QApplication::sendEvent(m_viewport, &enter);
        QCOMPARE(m_pad->sectionStatus(7), int(Hover));
        QCOMPARE(m_pad->toolTip(), QStringLiteral("LowerLeft"));
        release(0);
        m_pressSpy->clear();
        m_releaseSpy->clear();

        // A checked centre (the panel's toggle of auto-scan) offers the stop; its next press is the release.
        m_pad->SetSectionChecked(5, true);
        moveTo(6);
        moveTo(5);
        QCOMPARE(m_pad->toolTip(), QStringLiteral("StopAuto-Scanning"));
        press(5);
        QCOMPARE(m_releaseSpy->count(), 1);
        QCOMPARE(m_pressSpy->count(), 0);
    }
    void setSectionsEnabledAndChecked()
    {
        m_pad->SetSectionsEnabled({1, 3, 6, 4, 7, 9}, false);
        for (int s = 1; s <= 9; ++s)
            QCOMPARE(m_pad->sectionStatus(s), s % 3 == 2 ? int(Normal) : int(Disabled));
        m_pad->SetSectionsEnabled({-1, 0, 10, 6}, true); // unknown numbers are skipped
        QCOMPARE(m_pad->sectionStatus(6), int(Normal));
        // Enabling resets to normal, even a checked centre.
        m_pad->SetSectionChecked(5, true);
        m_pad->SetSectionsEnabled({5}, true);
        QCOMPARE(m_pad->sectionStatus(5), int(Normal));
    }
    void paintedImageFollowsState()
    {
        const QPoint upArrow(0, -50); // the middle of the up arrow's triangle
        const QColor normal = pixelAt(upArrow);
        press(2);
        QVERIFY(pixelAt(upArrow) != normal);
        release(2);
        m_pad->SetSectionsEnabled({2}, false);
        QVERIFY(qGray(pixelAt(upArrow).rgb()) < qGray(normal.rgb()) - 50);
        // In the host's white theme the pad draws its dark-on-light images.
        auto *style = vs_ui_data_controller::CVSStyleManager::Instance();
        style->SetTheme(vs_ui_data_controller::CVSStyleManager::WhiteTheme);
        const QColor whiteArrow = pixelAt(QPoint(0, 50));
        style->SetTheme(vs_ui_data_controller::CVSStyleManager::DarkTheme);
        QVERIFY(qGray(whiteArrow.rgb()) < 100);
    }

    // The module's images are a contract with the list models, the lock strip and the host's style
    // sheets: every image exists in both themes as a valid SVG, and the pad has one per state.
    void imageExistsInBothThemes()
    {
        QSet<QString> names[2];
        const QString roots[] = {QStringLiteral(":/Images/PTZ/"), QStringLiteral(":/Images/PTZWhite/")};
        for (int theme = 0; theme < 2; ++theme) {
            for (QDirIterator it(roots[theme], QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
                const QString path = it.next();
                QSvgRenderer renderer(path);
                QVERIFY2(renderer.isValid(), qPrintable(path));
                if (!path.contains(QLatin1String("/Direction/")))
                    QCOMPARE(renderer.defaultSize(), QSize(24, 24));
                names[theme] << path.mid(roots[theme].size());
            }
        }
        QVERIFY(names[0].size() > 40);
        QCOMPARE(names[0], names[1]);
        for (int section = 1; section <= 9; ++section) {
            for (int state = 0; state <= 4; ++state) {
                const QString path = CPTZCloud::sectionImage(section, state);
                QCOMPARE(path.isEmpty(), state == Checked && section != 5);
                QVERIFY2(path.isEmpty() || QFile::exists(path), qPrintable(path));
            }
        }
        QVERIFY(QFile::exists(CPTZCloud::backgroundImage()));
    }
    void previewWarmUpImage() { QVERIFY(QSvgRenderer(QStringLiteral(":/images/common_edit.svg")).isValid()); }

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
