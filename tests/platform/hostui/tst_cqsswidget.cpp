#include "vs_ui_data_controller/cqsswidget.h"

#include <QTest>

using vs_ui_data_controller::CQssWidget;

// A custom widget class that paints nothing itself, for comparison: style
// sheets do not fill a QWidget subclass of their own accord.
class Bare : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override { }
};

class TestCQssWidget : public QObject
{
    Q_OBJECT

private slots:
    void paintsStyleSheetBackgroundAndBorder()
    {
        QWidget host;
        host.resize(120, 60);
        auto *qss = new CQssWidget(&host);
        qss->setObjectName(QStringLiteral("qss"));
        qss->setGeometry(0, 0, 60, 60);
        auto *bare = new Bare(&host);
        bare->setObjectName(QStringLiteral("bare"));
        bare->setGeometry(60, 0, 60, 60);
        const QString rules = QStringLiteral("background: rgb(10, 20, 30); border: 2px solid rgb(200, 0, 0);");
        host.setStyleSheet(QStringLiteral("#qss { %1 } #bare { %1 }").arg(rules));

        const QImage img = host.grab().toImage();
        const qreal dpr = img.devicePixelRatio();
        const auto at = [&](int x, int y) { return QColor(img.pixel(int(x * dpr), int(y * dpr))); };
        QCOMPARE(at(30, 30), QColor(10, 20, 30));
        QCOMPARE(at(0, 30), QColor(200, 0, 0));
        QVERIFY(at(90, 30) != QColor(10, 20, 30));
    }
};

QTEST_MAIN(TestCQssWidget)
#include "tst_cqsswidget.moc"
