#include "support/panelfixture.h"

#include <QAbstractItemView>
#include <QBoxLayout>
#include <QTabWidget>
#include <QTest>

using namespace PreviewPTZControl;

class TestPreviewPTZWndComposition : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_env.setUp(); }
    void cleanup() { m_env.tearDown(); }

    void tabWidthFollowsVisibleTabs_data()
    {
        QTest::addColumn<QString>("camera");
        QTest::addColumn<int>("tabWidth");
        QTest::newRow("three tabs at 300 px") << kDome << 77;
        QTest::newRow("two tabs at 300 px") << kBasic << 116;
    }
    void tabWidthFollowsVisibleTabs()
    {
        QFETCH(QString, camera);
        QFETCH(int, tabWidth);
        auto *tabs = m_env.child<QTabWidget>("m_pTabWidget");
        tabs->setFixedWidth(300);
        panel()->SetCamera(QString(), camera, false, false);
        panel()->resize(560, 700); // the resize re-applies the rule with the width the tab widget has
        QTRY_COMPARE(tabs->width(), 300);
        panel()->resize(561, 700);
        QCOMPARE(tabs->styleSheet(), QStringLiteral("QTabBar::tab {width: %1px}").arg(tabWidth));
    }
    void whiteThemeRenamesOnceAndStays()
    {
        auto *presets = m_env.child<QAbstractItemView>("m_pTreeViewPreset");
        panel()->SwitchPTZWndBgColor(false);
        QVERIFY(m_env.child<QWidget>("pZoomInBtn"));
        QVERIFY(!presets->alternatingRowColors());

        panel()->SwitchPTZWndBgColor(true);
        QVERIFY(panel()->IsWhiteTheme());
        QCOMPARE(panel()->objectName(), QStringLiteral("CPreviewPTZWnd_white_"));
        for (const char *name :
             {"PreviewPTZControl_ptr_ptz_panel_left_white_", "ptr_scroll_content_white_", "m_pTabWidget_white_",
              "ptr_speed_slider_white_", "m_pBtnWiper_white_", "label_7_white_"})
            QVERIFY2(m_env.child<QWidget>(name), name);
        // The list keeps its own theme: light rows alternate and rows are not selectable.
        QVERIFY(presets->alternatingRowColors());
        QCOMPARE(presets->selectionMode(), QAbstractItemView::NoSelection);

        // A second switch must not stack suffixes; the switch back is one-way on purpose.
        panel()->SwitchPTZWndBgColor(true);
        panel()->SwitchPTZWndBgColor(false);
        QVERIFY(!panel()->IsWhiteTheme());
        QVERIFY(m_env.child<QWidget>("pZoomInBtn_white_"));
    }
    void layoutSwitchStacksOrPlacesSideBySide()
    {
        auto *left = m_env.child<QWidget>("PreviewPtzControl_ptr_ptz_panel_left_");
        auto *content = m_env.child<QWidget>("ptr_scroll_content");
        QVERIFY(qobject_cast<QHBoxLayout *>(content->layout()));
        QCOMPARE(left->minimumWidth(), 230);
        QCOMPARE(left->maximumWidth(), 230);

        panel()->SwitchPTZWndLayout(true);
        QVERIFY(panel()->IsStackedLayout());
        auto *stacked = qobject_cast<QVBoxLayout *>(content->layout());
        QVERIFY(stacked);
        QCOMPARE(stacked->itemAt(0)->widget(), left);
        QCOMPARE(left->minimumWidth(), 0);
        QCOMPARE(left->maximumWidth(), QWIDGETSIZE_MAX);

        panel()->SwitchPTZWndLayout(false);
        QVERIFY(qobject_cast<QHBoxLayout *>(content->layout()));
        QCOMPARE(left->width(), 230);

        panel()->show();
        auto *right = m_env.child<QWidget>("PreviewPtzControl_ptr_ptz_panel_right_");
        panel()->SetBottomHalfVisible(false);
        QVERIFY(!right->isVisible());
        panel()->SetBottomHalfVisible(true);
        QVERIFY(right->isVisible());
    }
    void switchesReadAtConstruction_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("product");
        QTest::addColumn<QStringList>("hidden");

        using site_store::CSiteStore;
        QTest::newRow("no PTZ info refresh")
            << CSiteStore::kIsSupportUpdatePTZInfo << QString() << QStringList{"ptr_update_ptz_btn_"};
        QTest::newRow("no extra buttons") << CSiteStore::kShowExtraButton << QString()
                                          << QStringList{"ptr_manual_track_btn_", "ptr_face_capture_btn_"};
        QTest::newRow("compact product without preset row")
            << CSiteStore::kShowPreSetTabWidget << "ZephViewLite" << QStringList{"widget"};
        QTest::newRow("other product keeps preset row")
            << CSiteStore::kShowPreSetTabWidget << "ZephViewPro" << QStringList();
    }
    void switchesReadAtConstruction()
    {
        QFETCH(QString, key);
        QFETCH(QString, product);
        QFETCH(QStringList, hidden);

        QVERIFY(TestEnv::store()->setBoolSetting(key, false));
        if (!product.isEmpty())
            QVERIFY(TestEnv::store()->setSetting(site_store::CSiteStore::kProductType, product));
        CPreviewPTZWnd panel(1, false, false);
        // The right half holds the named widgets (the lock strip's pages reuse "widget").
        auto *right = panel.findChild<QWidget *>("PreviewPtzControl_ptr_ptz_panel_right_");
        for (const char *name : {"ptr_update_ptz_btn_", "ptr_manual_track_btn_", "ptr_face_capture_btn_", "widget"}) {
            auto *widget = (qstrcmp(name, "widget") == 0 ? right : &panel)->findChild<QWidget *>(name);
            QVERIFY2(widget, name);
            QCOMPARE(widget->isHidden(), hidden.contains(name));
        }
    }

private:
    CPreviewPTZWnd *panel() const { return m_env.panel(); }

    PanelFixture m_env;
};

QTEST_MAIN(TestPreviewPTZWndComposition)
#include "tst_cpreviewptzwnd_composition.moc"
