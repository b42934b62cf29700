// The module's images are a contract with the list models, the lock strip and
// the host's style sheets: every name must resolve, in both themes, to a valid SVG.
#include "direction/cptzcloud.h"

#include <QFile>
#include <QSvgRenderer>
#include <QtTest>

class TestPtzImages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The images are compiled into the module; make sure it is loaded, as any host of it is.
        QVERIFY(QFile::exists(PreviewPTZControl::CPTZCloud::backgroundImage()));
    }
    void imageExistsInBothThemes_data()
    {
        QTest::addColumn<QString>("name");
        const char *const names[] = {
            // preset list
            "ic_unable preset point_nor.svg",
            "ic_device preset point_nor.svg",
            "ic_virtual preset point_nor.svg",
            "ic_fisheye preset point_nor.svg",
            // list actions (presets, patrols, patterns)
            "common_start_nor.svg",
            "common_pause_nor.svg",
            "common_edit_nor.svg",
            "common_delete_nor.svg",
            "common_record_nor.svg",
            "common_record_pre.svg",
            // dialogs and lock strip
            "ic_tips.svg",
            "ic_alert_error.svg",
            "icon_time_nor.svg",
            "common_status_alert_exception.svg",
            // buttons for the host's style sheets
            "Buttons/light_on.svg",
            "Buttons/light_off.svg",
            "Buttons/wiper.svg",
            "Buttons/3d_positioning.svg",
            "Buttons/one_key_focus.svg",
            "Buttons/lens_init.svg",
            "Buttons/manual_tracking.svg",
            "Buttons/face_capture.svg",
            "Buttons/park_action.svg",
            "Buttons/auto_tracking.svg",
            "Buttons/refresh.svg",
            "Buttons/zoom_in.svg",
            "Buttons/zoom_out.svg",
            "Buttons/focus_near.svg",
            "Buttons/focus_far.svg",
            "Buttons/iris_open.svg",
            "Buttons/iris_close.svg",
            "Buttons/lock.svg",
            "Buttons/unlock.svg",
            "Buttons/add.svg",
            "Buttons/remove.svg",
            "Buttons/move_up.svg",
            "Buttons/move_down.svg",
            "Buttons/settings.svg",
        };
        for (const char *name : names) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }
    void imageExistsInBothThemes()
    {
        QFETCH(QString, name);
        for (const QString &root : { QStringLiteral(":/Images/PTZ/"), QStringLiteral(":/Images/PTZWhite/") }) {
            const QString path = root + name;
            QVERIFY2(QFile::exists(path), qPrintable(path));
            QSvgRenderer renderer(path);
            QVERIFY2(renderer.isValid(), qPrintable(path));
            QCOMPARE(renderer.defaultSize(), QSize(24, 24));
        }
    }
    void previewWarmUpImage() { QVERIFY(QSvgRenderer(QStringLiteral(":/images/common_edit.svg")).isValid()); }
};

QTEST_MAIN(TestPtzImages)
#include "tst_ptzimages.moc"
