#include "support/paneltestenv.h"

#include <QGraphicsView>
#include <QHash>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTest>

#include <memory>
#include <vector>

using namespace PreviewPTZControl;

namespace {
namespace demo = site_store::demo;
const QStringList kCameras{QString::fromLatin1(demo::kSpeedDome), QString::fromLatin1(demo::kPtzNoPattern),
                           QString::fromLatin1(demo::kBoxZoom), QString::fromLatin1(demo::kCascade)};
const QStringList kLensButtons{QStringLiteral("pZoomInBtn"), QStringLiteral("pZoomOutBtn"),
                               QStringLiteral("pFocusInBtn"), QStringLiteral("pIRISOutBtn")};
constexpr int kPanels = 3;
constexpr int kEvents = 800;
} // namespace

// Random operator input over several panels and cameras: whatever the order of presses,
// drags, releases and screen changes, nothing moves once the button is up, and the cameras
// answer every request once.
class TestPreviewPTZWndStorm : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void pressReleaseStormLeavesNothingMoving_data();
    void pressReleaseStormLeavesNothingMoving();

private:
    QWidget *padViewport(int panel) const;
    QPoint randomPadPoint();
    void settle();
    void verifyNothingMoves(const QString &step);
    void switchScreen(int panel);

    PanelTestEnv m_env;
    std::vector<std::unique_ptr<CPreviewPTZWnd>> m_panels;
    QWidget *m_elsewhere = nullptr;
    QRandomGenerator m_random;
    QHash<QString, QHash<quint64, int>> m_answers; // camera -> request id -> answers
    std::unique_ptr<QObject> m_context;
};

void TestPreviewPTZWndStorm::init()
{
    m_env.setUp();
    m_answers.clear();
    m_context = std::make_unique<QObject>();
    for (const QString &id : kCameras) {
        PanelTestEnv::manager()->GetCameraByID(id);
        auto *camera = m_env.camera(id);
        QVERIFY2(camera, qPrintable(id));
        connect(camera, &ptz_devices::IPtzDriver::replied, m_context.get(),
                [this, id](const ptz_devices::DriverReply &reply) { ++m_answers[id][reply.requestId]; });
    }
    for (int i = 0; i < kPanels; ++i) {
        auto panel = std::make_unique<CPreviewPTZWnd>(unsigned(i), false, false);
        panel->SetPTZController(m_env.controller(), nullptr);
        panel->SetCamera(QString(), kCameras.at(i), false, false);
        panel->move(40 + 320 * i, 40);
        panel->show();
        m_panels.push_back(std::move(panel));
    }
    m_elsewhere = new QWidget;
    m_elsewhere->resize(80, 80);
    settle();
}

void TestPreviewPTZWndStorm::cleanup()
{
    m_panels.clear();
    delete m_elsewhere;
    m_elsewhere = nullptr;
    m_context.reset();
    m_env.tearDown();
}

QWidget *TestPreviewPTZWndStorm::padViewport(int panel) const
{
    auto *view = m_panels.at(size_t(panel))->findChild<QGraphicsView *>(QStringLiteral("ptr_graphics_view"));
    return view ? view->viewport() : nullptr;
}

// Mostly on an arrow, sometimes anywhere on the pad; never on its centre, which toggles
// auto-scan (a running function, not a held motion).
QPoint TestPreviewPTZWndStorm::randomPadPoint()
{
    static const QPoint kArrows[] = {{-45, -45}, {0, -50}, {45, -45}, {-50, 0}, {50, 0}, {-45, 45}, {0, 50}, {45, 45}};
    if (m_random.bounded(4) != 0)
        return kArrows[m_random.bounded(8)] + QPoint(87 + m_random.bounded(-6, 7), 87 + m_random.bounded(-6, 7));
    for (;;) {
        const QPoint p(m_random.bounded(174), m_random.bounded(174));
        if (qAbs(p.x() - 87) > 30 || qAbs(p.y() - 87) > 30)
            return p;
    }
}

void TestPreviewPTZWndStorm::settle()
{
    QCoreApplication::processEvents();
    QTRY_VERIFY(m_env.controller()->PendingRequestCount() == 0);
    for (const QString &id : kCameras)
        QTRY_COMPARE(m_env.camera(id)->pendingRequestCount(), 0);
    QCoreApplication::processEvents();
}

void TestPreviewPTZWndStorm::verifyNothingMoves(const QString &step)
{
    settle();
    for (const QString &id : kCameras) {
        QTRY_VERIFY2(!m_env.camera(id)->status().panTiltMoving && !m_env.camera(id)->status().zoomMoving,
                     qPrintable(step + QLatin1String(", ") + id));
    }
    settle();
    QVector<ptz_devices::DeviceStatus> before;
    for (const QString &id : kCameras)
        before << m_env.camera(id)->status();
    m_env.clock()->advance(1000);
    for (int i = 0; i < kCameras.size(); ++i) {
        const auto now = m_env.camera(kCameras.at(i))->status();
        const QString where = step + QLatin1String(", ") + kCameras.at(i);
        QVERIFY2(!now.panTiltMoving && !now.zoomMoving, qPrintable(where));
        QVERIFY2(now.pan == before.at(i).pan && now.tilt == before.at(i).tilt, qPrintable(where));
        QVERIFY2(now.zoom == before.at(i).zoom && now.focus == before.at(i).focus && now.iris == before.at(i).iris,
                 qPrintable(where));
    }
}

// What the host does to a screen's panel: another camera, the screen hidden behind another
// one or shown again, the screen stopped.
void TestPreviewPTZWndStorm::switchScreen(int panel)
{
    CPreviewPTZWnd *p = m_panels.at(size_t(panel)).get();
    const QString camera = kCameras.at(m_random.bounded(kCameras.size()));
    if (!p->isVisible()) {
        p->show();
        p->SetCamera(QString(), camera, false, false);
        return;
    }
    switch (m_random.bounded(3)) {
    case 0:
        p->SetCamera(QString(), camera, false, false);
        break;
    case 1:
        p->hide();
        break;
    default:
        p->StopWork();
        break;
    }
}

void TestPreviewPTZWndStorm::pressReleaseStormLeavesNothingMoving_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::newRow("seed 1") << 1u;
    QTest::newRow("seed 20261123") << 20261123u;
}

void TestPreviewPTZWndStorm::pressReleaseStormLeavesNothingMoving()
{
    QFETCH(quint32, seed);
    m_random.seed(seed);
    int held = -1;          // panel whose control holds the button, -1 when the button is up
    QWidget *grabber = nullptr; // the widget the press went to, which keeps the mouse
    int releases = 0;

    for (int step = 0; step < kEvents; ++step) {
        const int panel = m_random.bounded(kPanels);
        const QString label = QStringLiteral("seed %1 step %2").arg(seed).arg(step);
        // Weights: pad press 3, lens press 1, drag 2, release 3, screen change 1, time 1.
        static const int kKinds[] = {0, 0, 0, 1, 2, 2, 3, 3, 3, 4, 5};
        switch (kKinds[m_random.bounded(int(sizeof(kKinds) / sizeof(kKinds[0])))]) {
        case 0: // press on the pad
            if (held < 0 && m_panels.at(size_t(panel))->isVisible()) {
                grabber = padViewport(panel);
                QTest::mousePress(grabber, Qt::LeftButton, Qt::NoModifier, randomPadPoint());
                held = panel;
            }
            break;
        case 1: // press a lens button
            if (held < 0 && m_panels.at(size_t(panel))->isVisible()) {
                const QString name = kLensButtons.at(m_random.bounded(kLensButtons.size()));
                grabber = m_panels.at(size_t(panel))->findChild<QPushButton *>(name);
                QTest::mousePress(grabber, Qt::LeftButton);
                held = panel;
            }
            break;
        case 2: // drag
            if (held >= 0)
                QTest::mouseMove(grabber, QPoint(m_random.bounded(-50, 250), m_random.bounded(-50, 250)));
            break;
        case 3: // release: usually where the press went (it keeps the mouse), sometimes another window
            if (held >= 0) {
                const int where = m_random.bounded(4);
                if (where == 0)
                    QTest::mouseRelease(m_elsewhere, Qt::LeftButton, Qt::NoModifier, QPoint(40, 40));
                else if (where == 1)
                    QTest::mouseRelease(padViewport(panel), Qt::LeftButton, Qt::NoModifier, randomPadPoint());
                else
                    QTest::mouseRelease(grabber, Qt::LeftButton, Qt::NoModifier,
                                        QPoint(m_random.bounded(-50, 250), m_random.bounded(-50, 250)));
                held = -1;
                grabber = nullptr;
                ++releases;
                verifyNothingMoves(label);
            }
            break;
        case 4:
            switchScreen(panel);
            break;
        default:
            m_env.clock()->advance(m_random.bounded(300));
            QCoreApplication::processEvents();
            break;
        }
        if (QTest::currentTestFailed())
            return;
    }
    if (held >= 0)
        QTest::mouseRelease(grabber, Qt::LeftButton);
    verifyNothingMoves(QStringLiteral("seed %1 end").arg(seed));
    QVERIFY(releases > 20);

    int requests = 0;
    for (const QString &id : kCameras) {
        const auto log = m_env.camera(id)->requestLog();
        requests += log.size();
        for (const auto &entry : log)
            QVERIFY2(m_answers.value(id).value(entry.id) == 1,
                     qPrintable(QStringLiteral("%1 request %2 answered %3 times")
                                    .arg(id)
                                    .arg(entry.id)
                                    .arg(m_answers.value(id).value(entry.id))));
        int answered = 0;
        for (int count : m_answers.value(id))
            answered += count;
        QCOMPARE(answered, log.size());
    }
    qDebug("%d releases, %d requests", releases, requests);
    QVERIFY(requests > 100);
}

QTEST_MAIN(TestPreviewPTZWndStorm)
#include "tst_cpreviewptzwnd_storm.moc"
