#include "vs_ui_data_controller/cvsstylemanager.h"

#include <QSignalSpy>
#include <QTest>

using vs_ui_data_controller::CVSStyleManager;

class TestCVSStyleManager : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { CVSStyleManager::DestroyInstance(); }
    void coloursFollowTheme_data()
    {
        QTest::addColumn<int>("which");
        QTest::newRow("irregular shape") << 0;
        QTest::newRow("neutral T2") << 1;
    }
    void coloursFollowTheme()
    {
        QFETCH(int, which);
        CVSStyleManager *m = CVSStyleManager::Instance();
        const auto colour = [m, which] {
            switch (which) {
            case 0:
                return m->ColorPtzIrregularShape();
            case 1:
                return m->GetNeuColorT2(0.5);
            default:
                return m->GetTextNeuColorT2(0.5);
            }
        };
        QCOMPARE(m->GetTheme(), CVSStyleManager::DarkTheme);
        const QColor dark = colour();
        m->SetTheme(CVSStyleManager::WhiteTheme);
        QVERIFY(m->IsWhiteTheme());
        const QColor white = colour();
        QVERIFY(dark.rgb() != white.rgb());
        // Dark theme colours are lighter than the white theme's where they sit on
        // a dark background; the surfaces are the other way round.
        if (which == 0)
            QVERIFY(dark.lightness() < white.lightness());
        else
            QVERIFY(dark.lightness() > white.lightness());
    }
    void themeChangeIsReportedOnce()
    {
        CVSStyleManager *m = CVSStyleManager::Instance();
        QSignalSpy spy(m, &CVSStyleManager::ThemeChanged);
        m->SetTheme(CVSStyleManager::WhiteTheme);
        m->SetTheme(CVSStyleManager::WhiteTheme);
        m->SetTheme(CVSStyleManager::DarkTheme);
        QCOMPARE(spy.count(), 2);
        QCOMPARE(spy.at(0).at(0).toInt(), int(CVSStyleManager::WhiteTheme));
        QCOMPARE(spy.at(1).at(0).toInt(), int(CVSStyleManager::DarkTheme));
    }
};

QTEST_MAIN(TestCVSStyleManager)
#include "tst_cvsstylemanager.moc"
