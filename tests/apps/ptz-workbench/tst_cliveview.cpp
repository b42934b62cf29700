#include "cliveview.h"

#include "ptz_devices/ptzdevicetypes.h"

#include <QTest>

namespace {
// Share of the picture left at the live view's background colour, which the scene never has.
double UnpaintedShare(const QImage &picture)
{
    int flat = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            flat += (picture.pixel(x, y) & 0xffffff) == (qRgb(16, 18, 22) & 0xffffff);
    return double(flat) / (picture.width() * picture.height());
}

// Mean grey level, or with `edges` the mean step between neighbouring pixels.
double Mean(const QImage &picture, bool edges)
{
    double sum = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 1; x < picture.width(); ++x)
            sum += edges ? std::abs(qGray(picture.pixel(x, y)) - qGray(picture.pixel(x - 1, y)))
                         : qGray(picture.pixel(x, y));
    return sum / (picture.width() * picture.height());
}
} // namespace

class TestLiveView : public QObject
{
    Q_OBJECT
private slots:
    void everyPositionIsCovered_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QSize>("size");
        QTest::newRow("wide, tall nine-screen view") << 1.0 << QSize(186, 265);
        QTest::newRow("very tall view") << 1.0 << QSize(120, 600);
        QTest::newRow("zoomed 30x") << 30.0 << QSize(560, 400);
    }
    void everyPositionIsCovered()
    {
        QFETCH(double, zoom);
        QFETCH(QSize, size);
        ptz_devices::DeviceStatus status;
        status.zoom = zoom;
        for (double tilt : {-90.0, -45.0, 0.0, 10.0}) {
            for (double pan = 0; pan < 360; pan += 7.5) {
                status.pan = pan;
                status.tilt = tilt;
                const double share = UnpaintedShare(CLiveView::RenderScene(status, size));
                QVERIFY2(share < 0.02, qPrintable(QStringLiteral("pan %1 tilt %2").arg(pan).arg(tilt)));
            }
        }
    }
    void lensChangesThePicture()
    {
        ptz_devices::DeviceStatus status;
        status.pan = 40;
        const QSize size(320, 180);
        const QImage sharp = CLiveView::RenderScene(status, size);
        for (double focus : {0.0, 1.0}) {
            status.focus = focus;
            QVERIFY(Mean(CLiveView::RenderScene(status, size), true) < Mean(sharp, true) * 0.7);
        }
        status.focus = 0.5;
        status.iris = 0.0;
        QVERIFY(Mean(CLiveView::RenderScene(status, size), false) < Mean(sharp, false) - 30);
        status.iris = 1.0;
        QVERIFY(Mean(CLiveView::RenderScene(status, size), false) > Mean(sharp, false) + 30);
    }
};

QTEST_MAIN(TestLiveView)
#include "tst_cliveview.moc"
