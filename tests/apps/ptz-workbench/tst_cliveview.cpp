#include "cliveview.h"

#include "ptz_devices/ptzdevicetypes.h"

#include <QTest>

namespace {

// Share of the picture left at the live view's background colour, which the scene never has.
double UnpaintedShare(const ptz_devices::DeviceStatus &status, const QSize &size)
{
    const QImage picture = CLiveView::RenderScene(status, size);
    int flat = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const QRgb *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb c = row[x] & 0xffffff;
            if (c == (qRgb(16, 18, 22) & 0xffffff))
                ++flat;
        }
    }
    return double(flat) / (picture.width() * picture.height());
}

double Sharpness(const QImage &picture)
{
    double sum = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 1; x < picture.width(); ++x)
            sum += std::abs(qGray(picture.pixel(x, y)) - qGray(picture.pixel(x - 1, y)));
    return sum / (picture.width() * picture.height());
}

double Brightness(const QImage &picture)
{
    double sum = 0;
    for (int y = 0; y < picture.height(); y += 2)
        for (int x = 0; x < picture.width(); x += 2)
            sum += qGray(picture.pixel(x, y));
    return sum / ((picture.width() / 2) * (picture.height() / 2));
}

} // namespace

class TestLiveView : public QObject
{
    Q_OBJECT
private slots:
    void everyPositionIsCovered_data();
    void everyPositionIsCovered();
    void lensChangesThePicture();
};

void TestLiveView::everyPositionIsCovered_data()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QSize>("size");
    QTest::newRow("wide, four screens") << 1.0 << QSize(280, 200);
    QTest::newRow("wide, tall nine-screen view") << 1.0 << QSize(186, 265);
    QTest::newRow("very tall view") << 1.0 << QSize(120, 600);
    QTest::newRow("zoomed 9x") << 9.0 << QSize(280, 200);
    QTest::newRow("zoomed 30x") << 30.0 << QSize(560, 400);
}

void TestLiveView::everyPositionIsCovered()
{
    QFETCH(double, zoom);
    QFETCH(QSize, size);
    ptz_devices::DeviceStatus status;
    status.zoom = zoom;
    for (double tilt : {-90.0, -45.0, 0.0, 10.0}) {
        for (double pan = 0; pan < 360; pan += 7.5) {
            status.pan = pan;
            status.tilt = tilt;
            const double share = UnpaintedShare(status, size);
            QVERIFY2(share < 0.02, qPrintable(QStringLiteral("pan %1 tilt %2: %3% unpainted").arg(pan).arg(tilt).arg(share * 100)));
        }
    }
}

void TestLiveView::lensChangesThePicture()
{
    ptz_devices::DeviceStatus status;
    status.pan = 40;
    const QSize size(320, 180);
    const QImage sharp = CLiveView::RenderScene(status, size);
    status.focus = 0.0;
    const QImage nearBlur = CLiveView::RenderScene(status, size);
    status.focus = 1.0;
    const QImage farBlur = CLiveView::RenderScene(status, size);
    QVERIFY(Sharpness(nearBlur) < Sharpness(sharp) * 0.7);
    QVERIFY(Sharpness(farBlur) < Sharpness(sharp) * 0.7);
    status.focus = 0.5;
    status.iris = 0.0;
    const double closed = Brightness(CLiveView::RenderScene(status, size));
    status.iris = 1.0;
    const double open = Brightness(CLiveView::RenderScene(status, size));
    const double normal = Brightness(sharp);
    QVERIFY(closed < normal - 30);
    QVERIFY(open > normal + 30);
}

QTEST_MAIN(TestLiveView)
#include "tst_cliveview.moc"
