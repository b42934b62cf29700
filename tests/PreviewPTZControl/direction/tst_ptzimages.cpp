// The module's images are a contract with the list models, the lock strip and
// the host's style sheets: every name must resolve, in both themes, to a valid SVG.
#include "direction/cptzcloud.h"

#include <QFile>
#include <QSet>
#include <QSvgRenderer>
#include <QtTest>

class TestPtzImages : public QObject
{
    Q_OBJECT

private slots:
    void imageExistsInBothThemes_data()
    {
        // The images are compiled into the module; make sure it is loaded, as any host of it is.
        QVERIFY(QFile::exists(PreviewPTZControl::CPTZCloud::backgroundImage()));
        QTest::addColumn<QString>("name");
        const QStringList names{
            // preset list, list actions, dialogs and lock strip
            "ic_unable preset point_nor.svg", "ic_device preset point_nor.svg", "ic_virtual preset point_nor.svg",
            "ic_fisheye preset point_nor.svg", "common_start_nor.svg", "common_pause_nor.svg", "common_edit_nor.svg",
            "common_delete_nor.svg", "common_record_nor.svg", "common_record_pre.svg", "ic_tips.svg",
            "ic_alert_error.svg", "icon_time_nor.svg", "common_status_alert_exception.svg",
            // buttons for the host's style sheets
            "light_on", "light_off", "wiper", "3d_positioning", "one_key_focus", "lens_init", "manual_tracking",
            "face_capture", "park_action", "auto_tracking", "refresh", "zoom_in", "zoom_out", "focus_near", "focus_far",
            "iris_open", "iris_close", "lock", "unlock", "add", "remove", "move_up", "move_down", "settings"};
        for (const QString &name : names) {
            const QString file = name.endsWith(QLatin1String(".svg")) ? name : "Buttons/" + name + ".svg";
            QTest::newRow(qPrintable(file)) << file;
        }
        // The direction pad's background and every state of its sections (a checked arrow has none).
        QSet<QString> pad{PreviewPTZControl::CPTZCloud::backgroundImage()};
        for (int section = 1; section <= 9; ++section) {
            for (int state = 0; state <= 4; ++state)
                pad << PreviewPTZControl::CPTZCloud::sectionImage(section, state);
        }
        pad.remove(QString());
        for (const QString &path : qAsConst(pad))
            QTest::newRow(qPrintable(path)) << path.mid(int(qstrlen(":/Images/PTZ/")));
    }
    void imageExistsInBothThemes()
    {
        QFETCH(QString, name);
        for (const QString &root : {QStringLiteral(":/Images/PTZ/"), QStringLiteral(":/Images/PTZWhite/")}) {
            QSvgRenderer renderer(root + name);
            QVERIFY2(renderer.isValid(), qPrintable(root + name));
            if (!name.startsWith(QLatin1String("Direction/")))
                QCOMPARE(renderer.defaultSize(), QSize(24, 24));
        }
    }
    void previewWarmUpImage() { QVERIFY(QSvgRenderer(QStringLiteral(":/images/common_edit.svg")).isValid()); }
};

QTEST_MAIN(TestPtzImages)
#include "tst_ptzimages.moc"
