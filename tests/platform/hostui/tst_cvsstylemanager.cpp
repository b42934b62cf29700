#include "vs_ui_data_controller/cvsstylemanager.h"

#include <QSignalSpy>
#include <QTest>

using vs_ui_data_controller::CVSStyleManager;

class TestCVSStyleManager : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { CVSStyleManager::DestroyInstance(); }
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
