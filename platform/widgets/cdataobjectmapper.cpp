#include "quillon/cdataobjectmapper.h"

#include <algorithm>

namespace Quillon {

CDataObjectMapper::CDataObjectMapper(QObject *parent)
    : QObject(parent)
{
}

CDataObjectMapper::~CDataObjectMapper() = default;

void CDataObjectMapper::AddMapping(QObject *object, int role, const QByteArray &propertyName)
{
    if (!object || propertyName.isEmpty())
        return;
    for (const Mapping &m : qAsConst(m_mappings)) {
        if (m.object == object && m.role == role && m.property == propertyName)
            return;
    }
    m_mappings.append(Mapping{object, role, propertyName});
    // A role that already has a value applies it to the newcomer at once.
    const auto it = m_data.constFind(role);
    if (it != m_data.constEnd())
        object->setProperty(propertyName.constData(), it.value());
}

void CDataObjectMapper::RemoveMapping(QObject *object)
{
    m_mappings.erase(std::remove_if(m_mappings.begin(), m_mappings.end(),
                                    [object](const Mapping &m) { return m.object.isNull() || m.object == object; }),
                     m_mappings.end());
}

void CDataObjectMapper::ClearMapping()
{
    m_mappings.clear();
}

QVector<QObject *> CDataObjectMapper::GetMappedObjects(int role) const
{
    QVector<QObject *> objects;
    for (const Mapping &m : m_mappings) {
        if (m.role == role && m.object)
            objects.append(m.object.data());
    }
    return objects;
}

void CDataObjectMapper::SetData(int role, const QVariant &value)
{
    m_data.insert(role, value);
    Write(role, value);
    emit SignalDataChanged(role, value);
}

void CDataObjectMapper::SetData(const QMap<int, QVariant> &values)
{
    // Falsy values first: hiding the old page before showing the new one.
    for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
        if (!it.value().toBool())
            SetData(it.key(), it.value());
    }
    for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
        if (it.value().toBool())
            SetData(it.key(), it.value());
    }
}

QVariant CDataObjectMapper::GetData(int role) const
{
    return m_data.value(role);
}

void CDataObjectMapper::Write(int role, const QVariant &value)
{
    // A property write may run code that changes the mappings; walk a copy.
    const QVector<Mapping> mappings = m_mappings;
    for (const Mapping &m : mappings) {
        if (m.role == role && m.object)
            m.object->setProperty(m.property.constData(), value);
    }
}

} // namespace Quillon
