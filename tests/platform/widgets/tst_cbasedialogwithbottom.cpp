#include "quillon/cbasedialogwithbottom.h"
#include "quillon/cfixedcontentlineedit.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>

using namespace Quillon;

namespace {
// Accepts only after a check, the way a naming dialog does.
class CheckingDialog : public CBaseDialogWithBottom
{
public:
    CheckingDialog() { ReconnectConfirmButton(this, &CheckingDialog::OnConfirm); }
    bool allow = false;
    int checks = 0;

private:
    void OnConfirm()
    {
        ++checks;
        if (allow)
            accept();
    }
};
} // namespace

class TestCBaseDialogWithBottom : public QObject
{
    Q_OBJECT

private slots:
    void reconnectedConfirmRunsTheCheckOnly()
    {
        CheckingDialog dialog;
        dialog.show();
        QSignalSpy accepted(&dialog, &QDialog::accepted);
        QTest::mouseClick(dialog.GetConfirmButton(), Qt::LeftButton);
        QCOMPARE(dialog.checks, 1);
        QCOMPARE(accepted.count(), 0);
        QVERIFY(dialog.isVisible());
        dialog.allow = true;
        QTest::mouseClick(dialog.GetConfirmButton(), Qt::LeftButton);
        QCOMPARE(accepted.count(), 1);
    }
    void fixedContentStaysOutOfText()
    {
        CFixedContentLineEdit edit;
        edit.resize(160, 28);
        edit.SetFixedContent(QStringLiteral("s"));
        edit.show();
        QVERIFY(QTest::qWaitForWindowExposed(&edit));
        QTest::keyClicks(&edit, QStringLiteral("300"));
        QCOMPARE(edit.text(), QStringLiteral("300"));
        QCOMPARE(edit.GetFixedContent(), QStringLiteral("s"));
        QLabel *label = edit.GetFixedContentLabel();
        QVERIFY(label->isVisible());
        // Typed text ends before the unit starts.
        QVERIFY(edit.textMargins().right() >= label->width());
        QVERIFY(label->geometry().right() <= edit.width());
        edit.SetFixedContent(QString());
        QVERIFY(!label->isVisible());
        QCOMPARE(edit.textMargins().right(), 0);
    }
};

QTEST_MAIN(TestCBaseDialogWithBottom)
#include "tst_cbasedialogwithbottom.moc"
