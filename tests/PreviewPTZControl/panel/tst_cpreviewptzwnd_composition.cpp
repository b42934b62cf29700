#include "lock/clockmgrframe.h"
#include "support/panelfixture.h"

#include "panel/cradiusframe.h"

#include "quillon/cscrollarea.h"

#include <QAbstractItemView>
#include <QBoxLayout>
#include <QImage>
#include <QPainter>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTest>

using namespace PreviewPTZControl;
namespace demo = site_store::demo;

namespace {
const QStringList kWhiteNames { "CPreviewPTZWnd_white_", "PreviewPTZControl_ptr_ptz_panel_left_white_",
    "PreviewPTZControl_ptr_ptz_panel_right_white_", "ptr_scroll_content_white_", "m_pFrameAppendFun_white_",
    "pCancelBtn_white_", "label_2_white_", "label_3_white_", "label_4_white_", "label_5_white_", "label_6_white_",
    "label_7_white_", "btn_device_preset_white_", "btn_virtual_preset_white_", "m_pTabWidget_white_",
    "ptr_preset_type_frame_white_", "ptr_patrol_name_frame_white_", "ptr_config_frame_white_", "ptr_preset_type_white_",
    "pPatrolNameLabel_white_", "m_pTreeViewPatrolEdit_white_", "m_pTreeViewPreset_white_", "m_pTreeViewPatrol_white_",
    "m_pTreeViewPatten_white_", "ptr_label_slow_white_", "ptr_label_fast_white_", "pZoom_white_", "pFocusWnd_white_",
    "pIRISWnd_white_", "pZoomOutBtn_white_", "pZoomInBtn_white_", "pFocusOutBtn_white_", "pFocusInBtn_white_",
    "pIRISOutBtn_white_", "pIRISInBtn_white_", "m_pBtnKeyFocus_white_", "m_pBtn3D_white_", "m_pBtnResetPos_white_",
    "ptr_manual_track_btn_white_", "ptr_face_capture_btn_white_", "pAddBtn_white_", "pDeleteBtn_white_",
    "pUpBtn_white_", "pDownBtn_white_", "ptr_speed_slider_white_", "m_pBtnLight_white_", "m_pBtnWiper_white_" };

// Object names of both halves in tree order, as the style sheets and the host address them.
const QStringList kLeftTree { "ptr_widget_left_", "pLockFrame", "frame", "ptr_cloud_", "frame_4", "frame_6",
    "m_pFrameSpeed", "ptr_speed_slider_", "frame_5", "ptr_label_slow_", "ptr_label_fast_", "pZoom", "pZoomOutBtn",
    "pZoomInBtn", "pIRISWnd", "pIRISOutBtn", "pIRISInBtn", "pFocusWnd", "pFocusOutBtn", "pFocusInBtn" };
const QStringList kRightTree { "m_pAppendFunFrame", "m_pFrameAppendFun", "m_pBtnKeyFocus", "label_3", "m_pBtn3D",
    "label_4", "m_pBtnLight", "label_5", "m_pBtnWiper", "label_6", "m_pBtnResetPos", "ptr_manual_track_btn_", "label_2",
    "ptr_face_capture_btn_", "label_7", "ptr_park_action_btn_", "label_8", "ptr_auto_track_btn_", "ptr_tab_frame_",
    "m_pTabWidget", "m_pTabPreset", "m_pTreeViewPreset", "widget", "ptz_add_preset_btn_", "add_preset_label",
    "ptz_preset_label_", "widget_2", "ptr_line_edit_", "m_pTabCruise", "m_pTreeViewPatrol", "pPatrolModifyFrame",
    "ptr_patrol_name_frame", "pPatrolNameLabel", "pAddBtn", "pDeleteBtn", "pDownBtn", "pUpBtn", "ptr_preset_type_frame",
    "ptr_preset_type", "btn_device_preset", "btn_virtual_preset", "m_pTreeViewPatrolEdit", "ptr_config_frame",
    "pConfirmBtn", "pCancelBtn", "m_pTabPatten", "m_pTreeViewPatten" };

QStringList TreeOrder(const QObject *root, const QStringList &wanted)
{
    QStringList found;
    std::function<void(const QObject *)> walk = [&](const QObject *object) {
        QObjectList children = object->children();
        // Tab pages count in tab order, not in the order the stack happens to keep them.
        if (auto *stack = qobject_cast<const QStackedWidget *>(object)) {
            children.clear();
            for (int i = 0; i < stack->count(); ++i)
                children << stack->widget(i);
        }
        for (const QObject *child : qAsConst(children)) {
            if (wanted.contains(child->objectName()))
                found << child->objectName();
            // The lock strip's pages come from its own forms, which reuse names of the panel's forms.
            if (!qobject_cast<const CLockMgrFrame *>(child))
                walk(child);
        }
    };
    walk(root);
    return found;
}
} // namespace

class TestPreviewPTZWndComposition : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_env.setUp(); }
    void cleanup() { m_env.tearDown(); }

    void formsHoldEveryNamedWidgetInTreeOrder()
    {
        auto *left = m_env.panel()->findChild<QWidget *>("PreviewPtzControl_ptr_ptz_panel_left_");
        auto *right = m_env.panel()->findChild<QWidget *>("PreviewPtzControl_ptr_ptz_panel_right_");
        QVERIFY(left && right);
        QCOMPARE(TreeOrder(left, kLeftTree), kLeftTree);
        QCOMPARE(TreeOrder(right, kRightTree), kRightTree);
        QVERIFY(m_env.panel()->findChild<CPTZCloud *>("ptr_cloud_"));
        auto *scroll = m_env.panel()->findChild<Quillon::CScrollArea *>();
        QVERIFY(scroll);
        QVERIFY(scroll->widgetResizable());
        QCOMPARE(scroll->frameShape(), QFrame::NoFrame);
        QCOMPARE(scroll->widget()->objectName(), QStringLiteral("ptr_scroll_content"));
        QCOMPARE(left->parentWidget(), scroll->widget());
        QVERIFY(m_env.panel()->findChild<QWidget *>("ptr_update_widget")->findChild<QWidget *>("ptr_update_ptz_btn_"));
        QVERIFY(m_env.panel()->findChild<QWidget *>("ptr_recover_config_btn_"));
        auto *tabs = m_env.panel()->findChild<QTabWidget *>("m_pTabWidget");
        QCOMPARE(tabs->tabText(0), QStringLiteral("Preset"));
        QCOMPARE(tabs->tabText(1), QStringLiteral("Patrol"));
        QCOMPARE(tabs->tabText(2), QStringLiteral("Pattern"));
    }
    void tabWidthFollowsVisibleTabs_data()
    {
        QTest::addColumn<QString>("camera");
        QTest::addColumn<int>("tabWidth");
        QTest::newRow("three tabs at 300 px") << QString::fromLatin1(demo::kSpeedDome) << 77;
        QTest::newRow("two tabs at 300 px") << QString::fromLatin1(demo::kPtzNoPattern) << 116;
    }
    void tabWidthFollowsVisibleTabs()
    {
        QFETCH(QString, camera);
        QFETCH(int, tabWidth);
        auto *tabs = m_env.panel()->findChild<QTabWidget *>("m_pTabWidget");
        tabs->setFixedWidth(300);
        m_env.panel()->SetCamera(QString(), camera, false, false);
        m_env.panel()->resize(560, 700); // the resize re-applies the rule with the width the tab widget has
        QTRY_COMPARE(tabs->width(), 300);
        m_env.panel()->resize(561, 700);
        QCOMPARE(tabs->styleSheet(), QStringLiteral("QTabBar::tab {width: %1px}").arg(tabWidth));
    }
    void whiteThemeRenamesEveryThemedWidget()
    {
        m_env.panel()->SwitchPTZWndBgColor(true);
        QVERIFY(m_env.panel()->IsWhiteTheme());
        QCOMPARE(m_env.panel()->objectName(), QStringLiteral("CPreviewPTZWnd_white_"));
        for (const QString &name : kWhiteNames) {
            if (name == m_env.panel()->objectName())
                continue;
            QVERIFY2(m_env.panel()->findChild<QWidget *>(name), qPrintable(name));
        }
        // A second switch must not stack suffixes.
        m_env.panel()->SwitchPTZWndBgColor(true);
        QVERIFY(m_env.panel()->findChild<QWidget *>("pZoomInBtn_white_"));
    }
    void themeReachesThePresetList()
    {
        auto *presets = m_env.panel()->findChild<QAbstractItemView *>("m_pTreeViewPreset");
        QVERIFY(presets);
        m_env.panel()->SwitchPTZWndBgColor(false);
        QVERIFY(!presets->alternatingRowColors());
        m_env.panel()->SwitchPTZWndBgColor(true);
        // The list keeps its own theme: light rows alternate and rows are not selectable.
        QVERIFY(presets->alternatingRowColors());
        QCOMPARE(presets->selectionMode(), QAbstractItemView::NoSelection);
    }
    void darkThemeKeepsNames()
    {
        m_env.panel()->SwitchPTZWndBgColor(false);
        QVERIFY(m_env.panel()->findChild<QWidget *>("pZoomInBtn"));
        m_env.panel()->SwitchPTZWndBgColor(true);
        m_env.panel()->SwitchPTZWndBgColor(false);
        QVERIFY(!m_env.panel()->IsWhiteTheme());
        // The switch back is one-way on purpose: the white names stay.
        QVERIFY(m_env.panel()->findChild<QWidget *>("pZoomInBtn_white_"));
    }
    void layoutSwitchStacksOrPlacesSideBySide()
    {
        auto *left = m_env.panel()->findChild<QWidget *>("PreviewPtzControl_ptr_ptz_panel_left_");
        auto *content = m_env.panel()->findChild<QWidget *>("ptr_scroll_content");
        QVERIFY(qobject_cast<QHBoxLayout *>(content->layout()));
        QCOMPARE(left->minimumWidth(), 230);
        QCOMPARE(left->maximumWidth(), 230);

        m_env.panel()->SwitchPTZWndLayout(true);
        QVERIFY(m_env.panel()->IsStackedLayout());
        auto *stacked = qobject_cast<QVBoxLayout *>(content->layout());
        QVERIFY(stacked);
        QCOMPARE(stacked->itemAt(0)->widget(), left);
        QCOMPARE(left->minimumWidth(), 0);
        QCOMPARE(left->maximumWidth(), QWIDGETSIZE_MAX);

        m_env.panel()->SwitchPTZWndLayout(false);
        QVERIFY(qobject_cast<QHBoxLayout *>(content->layout()));
        QCOMPARE(left->width(), 230);
    }
    void bottomHalfCanBeHidden()
    {
        m_env.panel()->show();
        auto *right = m_env.panel()->findChild<QWidget *>("PreviewPtzControl_ptr_ptz_panel_right_");
        QVERIFY(right->isVisible());
        m_env.panel()->SetBottomHalfVisible(false);
        QVERIFY(!right->isVisible());
        m_env.panel()->SetBottomHalfVisible(true);
        QVERIFY(right->isVisible());
    }
    void radiusFrameDrawsItsDivider()
    {
        CRadiusFrame frame;
        frame.resize(40, 20);
        frame.SetLineColor(Qt::red);
        frame.setAttribute(Qt::WA_NoSystemBackground);

        auto render = [&frame] {
            QImage image(frame.size(), QImage::Format_ARGB32);
            image.fill(Qt::transparent);
            frame.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
            return image;
        };
        QImage image = render();
        QCOMPARE(QColor(image.pixel(20, 10)), QColor(Qt::red));
        QCOMPARE(qAlpha(image.pixel(2, 10)), 0);

        frame.SetDrawLine(false);
        image = render();
        QCOMPARE(qAlpha(image.pixel(20, 10)), 0);
    }
    void switchesReadAtConstruction_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("product");
        QTest::addColumn<QStringList>("hidden");

        using site_store::CSiteStore;
        QTest::newRow("no PTZ info refresh")
            << CSiteStore::kIsSupportUpdatePTZInfo << QString() << QStringList { "ptr_update_ptz_btn_" };
        QTest::newRow("no extra buttons") << CSiteStore::kShowExtraButton << QString()
                                          << QStringList { "ptr_manual_track_btn_", "ptr_face_capture_btn_" };
        QTest::newRow("compact product without preset row")
            << CSiteStore::kShowPreSetTabWidget << "ZephViewLite" << QStringList { "widget" };
        QTest::newRow("other product keeps preset row")
            << CSiteStore::kShowPreSetTabWidget << "ZephViewPro" << QStringList();
    }
    void switchesReadAtConstruction()
    {
        QFETCH(QString, key);
        QFETCH(QString, product);
        QFETCH(QStringList, hidden);

        const QStringList watched { "ptr_update_ptz_btn_", "ptr_manual_track_btn_", "ptr_face_capture_btn_", "widget" };
        QVERIFY(PanelTestEnv::store()->setBoolSetting(key, false));
        if (!product.isEmpty())
            QVERIFY(PanelTestEnv::store()->setSetting(site_store::CSiteStore::kProductType, product));
        CPreviewPTZWnd panel(1, false, false);
        // The right half holds the named widgets (the lock strip's pages reuse "widget").
        auto *right = panel.findChild<QWidget *>("PreviewPtzControl_ptr_ptz_panel_right_");
        for (const QString &name : watched) {
            auto *widget = (name == QLatin1String("widget") ? right : static_cast<QWidget *>(&panel))->findChild<QWidget *>(name);
            QVERIFY2(widget, qPrintable(name));
            QCOMPARE(widget->isHidden(), hidden.contains(name));
        }
    }

private:
    PanelFixture m_env;
};

QTEST_MAIN(TestPreviewPTZWndComposition)
#include "tst_cpreviewptzwnd_composition.moc"
