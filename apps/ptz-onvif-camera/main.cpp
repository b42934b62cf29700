#include "ptz_devices/csimulatedcamera.h"
#include "ptz_onvif_camera/cloopbackonvifcamera.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

// A simulated PTZ camera that answers ONVIF on 127.0.0.1 until it is killed.
int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ptz-onvif-camera"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Serves a simulated PTZ camera over ONVIF at http://127.0.0.1:PORT/onvif/device_service."));
    parser.addHelpOption();
    const QCommandLineOption portOpt(QStringLiteral("port"), QStringLiteral("TCP port (0: any free one)."),
                                     QStringLiteral("N"), QStringLiteral("8081"));
    const QCommandLineOption userOpt(QStringLiteral("user"), QStringLiteral("User name the camera asks for."),
                                     QStringLiteral("USER"));
    const QCommandLineOption passwordOpt(QStringLiteral("password"), QStringLiteral("Password of that user."),
                                         QStringLiteral("PASSWORD"));
    const QCommandLineOption latencyOpt(QStringLiteral("latency"), QStringLiteral("Delay before every answer."),
                                        QStringLiteral("MS"), QStringLiteral("0"));
    const QCommandLineOption modelOpt(QStringLiteral("model"), QStringLiteral("Simulated head, e.g. speed-dome."),
                                      QStringLiteral("MODEL"), QStringLiteral("speed-dome"));
    const QCommandLineOption discoveryOpt(QStringLiteral("no-discovery"),
                                          QStringLiteral("Do not answer WS-Discovery probes on UDP 3702."));
    parser.addOptions({portOpt, userOpt, passwordOpt, latencyOpt, modelOpt, discoveryOpt});
    parser.process(app);

    QTextStream err(stderr);
    bool portOk = false;
    const uint port = parser.value(portOpt).toUInt(&portOk);
    bool latencyOk = false;
    const int latency = parser.value(latencyOpt).toInt(&latencyOk);
    if (!portOk || port > 65535 || !latencyOk || latency < 0) {
        err << "--port needs 0-65535 and --latency a number of milliseconds.\n";
        return 2;
    }
    if (!ptz_devices::CSimulatedCamera::isKnownModel(parser.value(modelOpt))) {
        err << "Unknown model; use one of " << ptz_devices::CSimulatedCamera::models().join(QStringLiteral(", "))
            << ".\n";
        return 2;
    }
    ptz_onvif_camera::CLoopbackOnvifCamera::Options options;
    options.port = quint16(port);
    options.user = parser.value(userOpt);
    options.password = parser.value(passwordOpt);
    options.latencyMs = latency;
    options.model = parser.value(modelOpt);
    options.discoveryPort = parser.isSet(discoveryOpt) ? 0 : 3702;
    ptz_onvif_camera::CLoopbackOnvifCamera camera(options);
    QString error;
    if (!camera.start(&error)) {
        err << error << '\n';
        return 1;
    }
    if (options.discoveryPort != 0 && !camera.isAnsweringDiscovery())
        err << "Not answering discovery probes: UDP port 3702 cannot be used.\n" << Qt::flush;
    QTextStream(stdout) << camera.deviceAddress() << '\n' << Qt::flush;
    return app.exec();
}
