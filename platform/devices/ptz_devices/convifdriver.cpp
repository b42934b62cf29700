#include "ptz_devices/convifdriver.h"

#include "ptz_devices/cdriverfactory.h"
#include "ptz_devices/convifclient.h"
#include "ptz_devices/convifrequestqueue.h"

#include <QTimer>
#include <QUrl>

namespace ptz_devices {

COnvifDriver::COnvifDriver(const QString &cameraId, const QString &address, const QString &user,
                           const QString &password, QObject *parent)
    : IPtzDriver(parent)
    , m_cameraId(cameraId)
{
    registerDeviceMetaTypes();
    // Credentials may travel in the address; they are taken out of it so that
    // the address can be shown and logged.
    QUrl url(address);
    const QString urlUser = url.userName();
    const QString urlPassword = url.password();
    url.setUserInfo(QString());
    m_address = url.toString();

    m_client = new COnvifClient(this);
    m_client->setCredentials(user.isEmpty() ? urlUser : user, user.isEmpty() ? urlPassword : password);
    m_queue = new COnvifRequestQueue(this);
    connect(m_queue, &COnvifRequestQueue::answered, this, [this](const DriverReply &reply) {
        if (!m_internal.remove(reply.requestId))
            emit replied(reply);
    });
    connect(m_queue, &COnvifRequestQueue::timedOut, this,
            [this] { connectionLost(tr("the camera stopped answering")); });

    m_caps.model = QStringLiteral("onvif");
    m_caps.patternSlots = 0;
    m_caps.patrolSlots = 0;
    m_status.connected = false;

    m_reconnectTimer = new QTimer(this);
    m_reconnectTimer->setSingleShot(true);
    connect(m_reconnectTimer, &QTimer::timeout, this, &COnvifDriver::startConnect);
    m_renewTimer = new QTimer(this);
    connect(m_renewTimer, &QTimer::timeout, this, &COnvifDriver::renewHeldMoves);
    m_pollTimer = new QTimer(this);
    m_pollTimer->setInterval(500);
    connect(m_pollTimer, &QTimer::timeout, this, &COnvifDriver::pollStatus);

    QTimer::singleShot(0, this, &COnvifDriver::startConnect);
}

COnvifDriver::~COnvifDriver()
{
    m_client->abortAll();
    m_queue->failAll(tr("the camera driver was closed"));
}

IPtzDriver *COnvifDriver::create(const DriverConfig &config, QString *error)
{
    const QUrl url(config.address);
    if (!url.isValid() || url.scheme() != QLatin1String("http") || url.host().isEmpty()) {
        if (error)
            *error = tr("An ONVIF camera needs an address like http://host:port/onvif/device_service");
        return nullptr;
    }
    return new COnvifDriver(config.cameraId, config.address, config.user, config.password, config.parent);
}

void COnvifDriver::setRequestTimeout(int ms)
{
    m_queue->setTimeout(ms);
}

void COnvifDriver::setMoveTimeout(int ms)
{
    m_moveTimeoutMs = ms;
}

void COnvifDriver::setReconnectDelays(int firstMs, int maxMs)
{
    m_firstDelayMs = firstMs;
    m_maxDelayMs = maxMs;
    m_delayMs = firstMs;
}

void COnvifDriver::setStatusPollInterval(int ms)
{
    m_pollTimer->setInterval(ms);
}

void COnvifDriver::reconnect()
{
    m_reconnectTimer->stop();
    startConnect();
}

DeviceStatus COnvifDriver::status() const
{
    m_statusRead.start();
    DeviceStatus s = m_status;
    s.connected = m_connected;
    return s;
}

quint64 COnvifDriver::submit(DriverOperation operation, int number, int axes, bool isStop, bool isMove,
                             std::function<void(const Completion &)> send)
{
    COnvifRequestQueue::Entry entry;
    entry.id = m_nextId++;
    entry.operation = operation;
    entry.number = number;
    entry.axes = axes;
    entry.isStop = isStop;
    entry.isMove = isMove;
    entry.send = std::move(send);
    const quint64 id = entry.id;
    m_queue->enqueue(std::move(entry));
    return id;
}

quint64 COnvifDriver::unsupported(DriverOperation operation, int number)
{
    return submit(operation, number, COnvifRequestQueue::NoAxis, false, false,
                  [](const auto &done) { done(false, tr("this camera does not offer that function"), QVariant()); });
}

void COnvifDriver::soap(int service, const KDSoapMessage &request, const Completion &done,
                        const std::function<QVariant(const KDSoapMessage &)> &parse)
{
    const quint64 generation = m_connectGeneration;
    m_client->call(COnvifClient::Service(service), request,
                   [this, done, parse, generation](COnvifClient::Outcome outcome, const KDSoapMessage &reply,
                                                   const QString &error) {
                       if (outcome == COnvifClient::Outcome::Answered) {
                           done(true, QString(), parse ? parse(reply) : QVariant());
                           return;
                       }
                       done(false, error, QVariant());
                       if (outcome == COnvifClient::Outcome::Unreachable && generation == m_connectGeneration)
                           connectionLost(error);
                   });
}

// Functions the protocol has no counterpart for on this driver.
quint64 COnvifDriver::initLens()
{
    return unsupported(DriverOperation::LensInit);
}
quint64 COnvifDriver::setAutoScan(bool on, int)
{
    return unsupported(DriverOperation::AutoScan, on ? 1 : 0);
}
quint64 COnvifDriver::position3D(const QRectF &)
{
    return unsupported(DriverOperation::Position3D);
}
quint64 COnvifDriver::listPatterns()
{
    return submit(DriverOperation::ListPatterns, 0, COnvifRequestQueue::NoAxis, false, false,
                  [](const auto &done) { done(true, QString(), QVariant::fromValue(QVector<int>())); });
}
quint64 COnvifDriver::startPatternRecord(int number)
{
    return unsupported(DriverOperation::StartPatternRecord, number);
}
quint64 COnvifDriver::stopPatternRecord(int number)
{
    return unsupported(DriverOperation::StopPatternRecord, number);
}
quint64 COnvifDriver::playPattern(int number)
{
    return unsupported(DriverOperation::PlayPattern, number);
}
quint64 COnvifDriver::stopPattern(int number)
{
    return unsupported(DriverOperation::StopPattern, number);
}
quint64 COnvifDriver::removePattern(int number)
{
    return unsupported(DriverOperation::RemovePattern, number);
}
quint64 COnvifDriver::setAutoTrack(bool on)
{
    return unsupported(DriverOperation::SetAutoTrack, on ? 1 : 0);
}
quint64 COnvifDriver::getAutoTrack()
{
    return unsupported(DriverOperation::GetAutoTrack);
}
quint64 COnvifDriver::setParkAction(const ParkAction &)
{
    return unsupported(DriverOperation::SetParkAction);
}
quint64 COnvifDriver::getParkAction()
{
    return unsupported(DriverOperation::GetParkAction);
}
quint64 COnvifDriver::setPatrolRecovery(const PatrolRecovery &)
{
    return unsupported(DriverOperation::SetPatrolRecovery);
}
quint64 COnvifDriver::getPatrolRecovery()
{
    return unsupported(DriverOperation::GetPatrolRecovery);
}

} // namespace ptz_devices
