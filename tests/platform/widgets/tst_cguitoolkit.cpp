#include "quillon/cguitoolkit.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Quillon;

class TestCGUIToolkit : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_svg = m_dir.filePath(QStringLiteral("square.svg"));
        QFile f(m_svg);
        QVERIFY(f.open(QIODevice::WriteOnly));
        // Left half red, right half blue: shows the picture is scaled, not cropped.
        f.write("<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10' viewBox='0 0 10 10'>"
                "<rect x='0' y='0' width='5' height='10' fill='#ff0000'/>"
                "<rect x='5' y='0' width='5' height='10' fill='#0000ff'/></svg>");
    }
    void svgRenderedForRatio_data()
    {
        QTest::addColumn<qreal>("ratio");
        QTest::addColumn<QSize>("physical");
        QTest::newRow("1.0") << qreal(1.0) << QSize(24, 24);
        QTest::newRow("2.0") << qreal(2.0) << QSize(48, 48);
    }
    void svgRenderedForRatio()
    {
        QFETCH(qreal, ratio);
        QFETCH(QSize, physical);
        const QPixmap pm = CGUIToolkit::GetPixmapFromSvg(m_svg, QSize(24, 24), ratio);
        QVERIFY(!pm.isNull());
        QCOMPARE(pm.size(), physical);
        QCOMPARE(pm.devicePixelRatioF(), ratio);
        const QImage img = pm.toImage();
        QCOMPARE(QColor(img.pixel(1, physical.height() / 2)), QColor(255, 0, 0));
        QCOMPARE(QColor(img.pixel(physical.width() - 2, physical.height() / 2)), QColor(0, 0, 255));
    }
    void missingSvgGivesNullPixmap()
    {
        QVERIFY(CGUIToolkit::GetPixmapFromSvg(QStringLiteral(":/images/common_edit.svg"), QSize(24, 24), 1.0).isNull());
        QVERIFY(CGUIToolkit::GetPixmapFromSvg(m_svg, QSize(), 1.0).isNull());
        QWidget w;
        QVERIFY(!CGUIToolkit::GetPixmapFromSvg(m_svg, QSize(8, 8), &w).isNull());
    }

private:
    QTemporaryDir m_dir;
    QString m_svg;
};

QTEST_MAIN(TestCGUIToolkit)
#include "tst_cguitoolkit.moc"
