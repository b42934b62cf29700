#include "vs_ui_data_controller/cinformationmgr.h"

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

using vs_ui_data_controller::CInformationMgr;

namespace {
QList<QWidget *> Notices()
{
    QList<QWidget *> found;
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget *w : windows) {
        if (w->objectName() == QLatin1String(CInformationMgr::NoticeObjectName()) && w->isVisible())
            found << w;
    }
    return found;
}
} // namespace

class TestCInformationMgr : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        CInformationMgr::Instance()->SetDisplayDuration(100);
        CInformationMgr::Instance()->SetFadeDuration(300);
    }
    void cleanup() { CInformationMgr::DestroyInstance(); }

    void noticeAppearsAtBottomRightAndFadesAway()
    {
        QWidget parent;
        parent.show();
        QSignalSpy spy(CInformationMgr::Instance(), &CInformationMgr::SignalInformationShown);
        QPointer<QWidget> notice = CInformationMgr::Instance()->ShowInformationAtScreenRightBottom_V3(
            QStringLiteral("held by admin"), &parent);
        QVERIFY(notice);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(Notices(), QList<QWidget *>{notice.data()});
        auto *label = notice->findChild<QLabel *>(QLatin1String(CInformationMgr::NoticeTextObjectName()));
        QVERIFY(label);
        QCOMPARE(label->text(), QStringLiteral("held by admin"));

        const QRect area = parent.screen()->availableGeometry();
        const QRect frame = notice->geometry();
        QVERIFY(area.contains(frame));
        QVERIFY(area.right() - frame.right() < 40);
        QVERIFY(area.bottom() - frame.bottom() < 40);

        // Stays opaque at first, then fades and is gone.
        QCOMPARE(notice->windowOpacity(), 1.0);
        QTRY_VERIFY(notice && notice->windowOpacity() < 1.0);
        QTRY_VERIFY(notice.isNull());
        QVERIFY(Notices().isEmpty());
    }
    void newNoticeReplacesTheOldOne()
    {
        CInformationMgr::Instance()->SetDisplayDuration(60000);
        QPointer<QWidget> first =
            CInformationMgr::Instance()->ShowInformationAtScreenRightBottom_V3(QStringLiteral("one"));
        QPointer<QWidget> second =
            CInformationMgr::Instance()->ShowInformationAtScreenRightBottom_V3(QStringLiteral("two"));
        QTRY_VERIFY(first.isNull());
        QVERIFY(second);
        QCOMPARE(Notices().size(), 1);
        delete second;
    }
    void noticeGoesWithItsParent()
    {
        CInformationMgr::Instance()->SetDisplayDuration(60000);
        auto *parent = new QWidget;
        parent->show();
        QPointer<QWidget> notice =
            CInformationMgr::Instance()->ShowInformationAtScreenRightBottom_V3(QStringLiteral("x"), parent);
        delete parent;
        QVERIFY(notice.isNull());
    }
};

QTEST_MAIN(TestCInformationMgr)
#include "tst_cinformationmgr.moc"
